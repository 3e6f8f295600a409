; a label may hold blanks, but can then never be found
MI BUCLE: NOP
 JMP MI BUCLE
