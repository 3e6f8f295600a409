fin: NOP
FIN: NOP
