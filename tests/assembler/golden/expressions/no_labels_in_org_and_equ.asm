M: EQU 5
N: EQU M+1
P: EQU M
 ORG M
 ORG M+1
