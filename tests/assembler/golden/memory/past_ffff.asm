; reported once, at the statement
 ORG 0FFFEH
 JMP 0
