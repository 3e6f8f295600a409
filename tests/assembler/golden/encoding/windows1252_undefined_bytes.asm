 NOP ; 
X: HLT
 JMP x
