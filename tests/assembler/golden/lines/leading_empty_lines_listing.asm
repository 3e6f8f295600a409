


; first
 NOP

 HLT
