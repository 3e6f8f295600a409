; in a sum the limit holds
 ORG 0FFFFH
 NOP
FIN:
 ORG 0
 LXI H,FIN+0
 MVI A,FIN
