N: EQU 1
N: EQU 2
