; a sign makes an expression of it
A-B: NOP
A: EQU 5
B: EQU 2
 MVI C,A-B
