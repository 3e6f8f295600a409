; ---------------------------------------------------------------------
; 17  Transmisión serie por SOD
; ---------------------------------------------------------------------
; Propósito: enviar un texto bit a bit por la salida SOD con SIM: un bit
;            de inicio (0), los ocho del carácter, el de menos peso
;            primero, y uno de parada (1). SID dice si el receptor está
;            listo: el programa espera a que valga 1.
; Antes:     desde 1000H, el texto, terminado por un 00H (aquí "OK"). Pon
;            el programa en marcha y marca SID.
; Resultado: SOD sigue los bits y termina en 1. Desde 2000H queda copia de
;            lo enviado, un byte por bit (80H si era 1 y 00H si era 0). La
;            letra O es 4FH, es decir, 01001111B:
;              (2000H) = 00H
;              (2001H) = 80H
;              (2002H) = 80H
;              (2003H) = 80H
;              (2004H) = 80H
;              (2005H) = 00H
;              (2006H) = 00H
;              (2007H) = 80H
;              (2008H) = 00H
;              (2009H) = 80H
; Pregunta:  ¿de dónde sale el bit de parada, si el bucle no lo distingue
;            de los demás? ¿Por qué las instrucciones entre RAR y el paso
;            siguiente no pueden cambiar CY?
; ---------------------------------------------------------------------
; El simulador no cuenta el tiempo. En un 8085, lo que dura un bit sale de
; contar los estados del bucle BIT, y se ajusta con la subrutina RETARD.

PILA:   EQU  4000H

        ORG  0000H

INICIO: LXI  SP,PILA
        MVI  A,11000000B    ; bit 6: mover SOD; bit 7: a 1, en reposo
        SIM
        LXI  H,TEXTO
        LXI  D,COPIA
OTRO:   MOV  A,M
        ORA  A
        JZ   FIN
        CALL ENVIAR
        INX  H
        JMP  OTRO
FIN:    HLT

; ENVIAR: envía A y deja copia desde DE, que avanza diez lugares. Cambia
; A, BC y los indicadores.
ENVIAR: MOV  C,A
LIBRE:  RIM
        ORA  A              ; SID está en el bit 7, el signo; y CY = 0
        JP   LIBRE          ; el receptor no está listo
        MVI  B,10           ; bits que faltan; el primero, el 0 de CY
BIT:    MVI  A,0
        RAR                 ; CY pasa al bit 7 de A
        STAX D
        INX  D
        ORI  01000000B      ; bit 6: mover SOD. Las máscaras no cambian
        SIM
        CALL RETARD
        STC                 ; por la izquierda de C entran unos,
        MOV  A,C
        RAR
        MOV  C,A            ; y por la derecha sale el bit siguiente
        DCR  B              ; DCR no cambia CY
        JNZ  BIT
        RET

; RETARD: lo que dura un bit. Deja A a 0.
RETARD: MVI  A,20
VUELTA: DCR  A
        JNZ  VUELTA
        RET

        ORG  1000H
TEXTO:  DFB  4FH,4BH,00H    ; OK

COPIA:  EQU  2000H

        END
