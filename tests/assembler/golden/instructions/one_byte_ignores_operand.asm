; nobody looks at the operand of a one-byte instruction
 NOP 5
 HLT NADA QUE VER
 RET 99999999999
 RST3 7
 MOVA,B C
 NOP 1,2
