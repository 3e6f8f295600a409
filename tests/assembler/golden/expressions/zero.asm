 MVI A,5-5
 DFW 0+0,0-0
