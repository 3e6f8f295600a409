; the size counts, not the bytes
 ORG 0FFFFH
A,B: DFB 1
