; INR A, not an input from RA
RA: EQU 5
 IN RA
 IN RB
 IN R A
