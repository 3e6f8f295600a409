; where there are no data the comma is a character like any other
A,B: ORG 10H
A,C: MVI A,1
D,E: NOP
F,G:
