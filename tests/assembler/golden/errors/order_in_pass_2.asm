; ORG first, then the duplicates, then the value of EQU, then the memory
A: EQU 1
A: ORG X
A: EQU Y
 ORG 0FFFFH
A: DFW 1,2
