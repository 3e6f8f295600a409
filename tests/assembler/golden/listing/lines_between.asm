; not listed: nothing comes before the first statement
 NOP

; between
   
 HLT
; not listed: nothing comes after the last one
