; the listing shows the counter, the table the value
 ORG 1000H
N: EQU 10H
 MVI A,N
