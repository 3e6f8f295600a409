; H, AH, B, D, FFH are no numbers
 ORG 200H
H: NOP
AH: NOP
B: NOP
D: NOP
FFH: NOP
12B: NOP
 JMP H
 JMP AH
 JMP B
 JMP D
 JMP FFH
 JMP 12B
