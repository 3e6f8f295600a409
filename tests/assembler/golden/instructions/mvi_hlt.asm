; three bytes at 0000
 MVI A,5
 HLT
