 DFB 1
 ORG 2
 DFB 3
