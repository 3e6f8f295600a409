; a label that reads as a number is never found
10: NOP
10H: NOP
1B: NOP
 JMP 10
 JMP 10H
 JMP 1B
