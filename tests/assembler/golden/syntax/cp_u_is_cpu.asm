; CPU is a directive without bytes; CP UNO is a call
UNO: EQU 1
 CP U
 CP UNO
