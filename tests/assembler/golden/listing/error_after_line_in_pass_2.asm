A: NOP
; comment
A: NOP
 HLT
