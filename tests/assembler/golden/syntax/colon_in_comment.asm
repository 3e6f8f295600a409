 NOP ; not a label: this
 JMP FIN ;:
FIN: HLT ; FIN: twice?
