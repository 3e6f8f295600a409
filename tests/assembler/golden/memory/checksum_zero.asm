; the bytes add up to a multiple of 256
 DFB 0FFH
 ORG 10H
 DFB 0EFH
