; capital letters of accented ones
niño: NOP
 JMP NIÑO
 jmp niÑo
Árbol: NOP
 CALL áRBOL
