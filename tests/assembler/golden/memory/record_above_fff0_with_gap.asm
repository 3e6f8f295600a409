; a gap ends the record before FFFF, so its count is right
 ORG 0FFF5H
 DFB 1,2,3
