_A.B$C?@#: NOP
 JMP _a.b$c?@#
"A": NOP
 JMP "A"
(A): NOP
 JMP (A)
