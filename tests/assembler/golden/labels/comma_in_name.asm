; commas of the label count for the size of data: two bytes, the second one 00
A,B: DFB 7
C,D: DFW 1234H
 HLT
