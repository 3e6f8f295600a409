 DFB 1,
 DFB ,1
 DFB 1,,2
 DFW ,
