; the later statement wins, silently
 DFB 1,2,3,4
 ORG 1
 DFB 9,8
