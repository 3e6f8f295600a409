; ---------------------------------------------------------------------
; 06  Multiplicación de 8 por 8 bits
; ---------------------------------------------------------------------
; Propósito: multiplicar como a mano, pero en base dos: por cada bit del
;            multiplicador se desplaza el producto y, si el bit es 1, se
;            suma el multiplicando.
; Antes:     1000H y 1001H, los factores, sin signo (aquí 19H y 0EH, que
;            son 25 y 14).
; Resultado: 2000H-2001H, el producto, byte bajo primero (350 = 015EH).
;              (2000H) = 5EH
;              (2001H) = 01H
; Pregunta:  DAD H duplica HL. ¿Por qué se mira primero el bit de más
;            peso? ¿Puede el producto salirse de 16 bits?
; ---------------------------------------------------------------------
; DCR no cambia CY, ni aquí ni en el 8085. Sí difiere AC: este simulador
; lo deja siempre a 0 tras DCR.

        ORG  0000H

INICIO: LDA  FACT1
        MOV  E,A
        MVI  D,0            ; DE = multiplicando
        LDA  FACT2          ; A = multiplicador
        LXI  H,0            ; HL = producto
        MVI  B,8            ; B = bits que faltan
BUCLE:  DAD  H              ; producto por 2
        RLC                 ; el bit de más peso pasa a CY
        JNC  CERO
        DAD  D
CERO:   DCR  B
        JNZ  BUCLE
        SHLD PRODUC
        HLT

        ORG  1000H
FACT1:  DFB  25
FACT2:  DFB  14

PRODUC: EQU  2000H

        END
