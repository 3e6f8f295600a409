; in the last pass an error stands before the lines above its statement
 NOP
; comment one
; comment two
 JMP NADA
 HLT
