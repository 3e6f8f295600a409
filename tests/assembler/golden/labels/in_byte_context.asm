; below 256 it is a byte
N: EQU 255
M: EQU 256
 MVI A,N
 MVI A,M
