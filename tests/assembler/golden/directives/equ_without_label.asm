; without a label nobody looks at the operand
 EQU 5
 EQU NADA QUE VER
 EQU
 HLT
