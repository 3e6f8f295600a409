; statements without bytes may stand at 10000
 ORG 0FFFFH
 NOP
FIN:
 END
 CPU 8085
N: EQU 1
