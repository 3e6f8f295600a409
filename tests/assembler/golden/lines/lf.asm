 NOP
; between
X: JMP X
