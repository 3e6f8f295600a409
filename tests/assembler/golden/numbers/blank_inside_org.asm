; but those of ORG and EQU do not
 ORG 1 0
N: EQU 1 0
