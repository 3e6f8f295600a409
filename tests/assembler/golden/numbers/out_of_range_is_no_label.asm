; 70000 is a number, if too large a one: the label is not found
70000: NOP
 JMP 70000
