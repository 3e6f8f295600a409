; what is too large even for 31 bits is no number, so it may be a label
80000000H: NOP
 JMP 80000000H
