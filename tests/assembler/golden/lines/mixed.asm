 NOP
 HLT
 CMA CMC

 DAA
 EI