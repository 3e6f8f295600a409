; a label right behind FFFF is worth 65536: as a word it is 0000
 ORG 0FFFFH
 NOP
FIN:
 ORG 0
 LXI H,FIN
 LXI H,FIN-1
