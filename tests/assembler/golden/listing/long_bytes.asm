 DFB 1,2,3
 DFB 1,2,3,4
 DFW 1
 DFW 1,2
