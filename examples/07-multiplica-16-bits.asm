; ---------------------------------------------------------------------
; 07  Multiplicación de 16 por 16 bits
; ---------------------------------------------------------------------
; Propósito: obtener un producto de 32 bits. HL (parte alta) y DE (parte
;            baja) se desplazan juntos a la derecha con RAR; DE empieza
;            con el multiplicador, cuyos bits salen por un extremo
;            mientras entran los del producto por el otro.
; Antes:     1000H-1001H y 1002H-1003H, los factores, byte bajo primero
;            (aquí 1234H y ABCDH).
; Resultado: 2000H-2003H, el producto, byte bajo primero (0C374FA4H).
;              (2000H) = A4H
;              (2001H) = 4FH
;              (2002H) = 37H
;              (2003H) = 0CH
; Pregunta:  ¿qué vale CY al llegar a DESPLA cuando no se ha sumado? ¿Y
;            cuando sí? ¿Qué pasaría si hubiera un ORA A en medio?
; ---------------------------------------------------------------------

        ORG  0000H

INICIO: LHLD FACT1
        MOV  B,H
        MOV  C,L            ; BC = multiplicando
        LHLD FACT2
        XCHG                ; DE = multiplicador y parte baja
        LXI  H,0            ; HL = parte alta
        MVI  A,16
        STA  FALTAN         ; no quedan registros: se cuenta en memoria
BUCLE:  MOV  A,E
        RRC                 ; CY = bit que toca del multiplicador
        JNC  DESPLA
        DAD  B              ; CY = lo que no cabe en HL
DESPLA: MOV  A,H            ; CY entra por la izquierda de H ...
        RAR
        MOV  H,A
        MOV  A,L
        RAR
        MOV  L,A
        MOV  A,D
        RAR
        MOV  D,A
        MOV  A,E
        RAR                 ; ... y el bit ya usado sale de E
        MOV  E,A
        LDA  FALTAN
        DCR  A
        STA  FALTAN         ; STA no cambia Z
        JNZ  BUCLE
        SHLD PRODUC+2
        XCHG
        SHLD PRODUC
        HLT

        ORG  1000H
FACT1:  DFW  1234H
FACT2:  DFW  0ABCDH

PRODUC: EQU  2000H
FALTAN: EQU  2010H

        END
