À€: NOP
 JMP À€
