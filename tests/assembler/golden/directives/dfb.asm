 DFB 1,2,3
 DFB 1
 DFB 1 , 2
 DFB 1,2,3,4
 DFB 255,0
