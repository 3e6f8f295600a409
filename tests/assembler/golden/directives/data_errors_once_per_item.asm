 DFB A,B,C
 DFW A,1,B
