N: EQU 10H
 MVI A,N+1
 MVI A,N-1
 MVI A,1+2+3-4
 LXI H,N+N+N
 LXI H, N + 100H - 1
