; END ends nothing
 NOP
 END INICIO
 HLT
X: JMP X
 END
