 NOP ; one ; two
 NOP;nothing between
; alone
   ; behind blanks
 MVI A,5;';' ends the statement, quotes or not
