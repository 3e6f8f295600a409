; ---------------------------------------------------------------------
; 12  Pila y subrutinas: factorial recursivo
; ---------------------------------------------------------------------
; Propósito: una subrutina que se llama a sí misma. Cada llamada guarda en
;            la pila su dato (PUSH PSW) y su dirección de retorno (CALL).
; Antes:     1000H, un número de 0 a 8 (aquí 5).
; Resultado: 2000H-2001H, su factorial, byte bajo primero (120).
;              (2000H) = 78H
;              (2001H) = 00H
; Pregunta:  pon un punto de ruptura en UNO y mira la pila: ¿cuántos
;            bytes ocupa con un 5? ¿Y con un 8? ¿Por qué el 9 ya no da un
;            resultado correcto?
; ---------------------------------------------------------------------

PILA:   EQU  4000H          ; la pila crece hacia abajo desde 3FFFH

        ORG  0000H

INICIO: LXI  SP,PILA
        LDA  NUMERO
        CALL FACTOR
        SHLD RESULT
        HLT

; FACTOR: HL = factorial de A. Cambia A, DE y los indicadores.
FACTOR: CPI  2
        JC   UNO            ; 0! = 1! = 1
        PUSH PSW            ; se guarda A (y F con él)
        DCR  A
        CALL FACTOR         ; HL = factorial de A - 1
        POP  PSW
        CALL MULTIP         ; por A
        RET
UNO:    LXI  H,1
        RET

; MULTIP: HL = HL por A, con A de 1 en adelante. Cambia A, DE y los
; indicadores.
MULTIP: XCHG                ; DE = lo que se suma
        LXI  H,0
VUELTA: DAD  D
        DCR  A
        JNZ  VUELTA
        RET

        ORG  1000H
NUMERO: DFB  5

RESULT: EQU  2000H

        END
