 NOP
; comment
 HOLA
 HLT
