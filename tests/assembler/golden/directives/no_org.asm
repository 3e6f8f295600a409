 NOP
 HLT
