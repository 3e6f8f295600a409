; one
; two
