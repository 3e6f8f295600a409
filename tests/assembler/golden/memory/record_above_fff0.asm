; claims sixteen bytes and carries the three that there are
 ORG 0FFFDH
 DFB 1,2,3
