; one empty item
 DFB
 DFW
