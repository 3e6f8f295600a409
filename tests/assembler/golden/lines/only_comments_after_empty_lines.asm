

; one
; two
