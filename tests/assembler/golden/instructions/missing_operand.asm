; found without an operand, which is missed in the last pass
 JMP
 ADI
 MVI A,
 LXI H,
 LDA
