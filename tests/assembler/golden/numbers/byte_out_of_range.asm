; too large gives FE, no number gives FF
 MVI A,100H
 MVI A,256
 DFB 255,256
 MVI A,ZZ
