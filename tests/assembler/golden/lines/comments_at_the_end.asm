 NOP
; not listed
;
