; ---------------------------------------------------------------------
; 01  Suma de dos bytes
; ---------------------------------------------------------------------
; Propósito: leer dos bytes de la memoria, sumarlos en el acumulador y
;            guardar la suma.
; Antes:     1000H y 1001H, los dos sumandos (aquí 25H y 1AH).
; Resultado: la suma, y en CY el acarreo si no cabe en un byte.
;              (2000H) = 3FH
; Pregunta:  pon F0H y 20H en los sumandos. ¿Qué queda en 2000H y qué
;            indican CY y Z? ¿Dónde está el bit que falta?
; ---------------------------------------------------------------------

        ORG  0000H

INICIO: LDA  NUM1           ; A = primer sumando
        MOV  B,A            ; se aparta en B, porque A hace falta otra vez
        LDA  NUM2           ; A = segundo sumando
        ADD  B              ; A = A + B
        STA  SUMA           ; se guarda el resultado
        HLT

        ORG  1000H
NUM1:   DFB  25H
NUM2:   DFB  1AH

SUMA:   EQU  2000H

        END
