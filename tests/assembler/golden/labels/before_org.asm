A:
B: ORG 50H
C: HLT
