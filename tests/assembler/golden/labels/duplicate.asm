A: NOP
A: NOP
