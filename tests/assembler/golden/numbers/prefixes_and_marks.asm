; no prefixes, no current address
 DFB 0X10
 DFB $10
 DFB #5
 DFW $
 DFB 10O
