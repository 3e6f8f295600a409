; operands lose all their blanks
 MVI A,1 0
 DFB 1 2 H , 1 0 1 B
 JMP 1 2 3 4 H
