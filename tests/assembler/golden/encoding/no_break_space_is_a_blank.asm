 MVI A, 5 ; x
 NOP 
