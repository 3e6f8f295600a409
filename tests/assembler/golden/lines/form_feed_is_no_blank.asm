 NOP
 HLT
 NOP
