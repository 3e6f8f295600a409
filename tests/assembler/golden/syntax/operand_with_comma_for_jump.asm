; the operand is the label "A,B", which can be written and found
A,B: NOP
 JMP A,B
 JMP A , B
