; ---------------------------------------------------------------------
; 02  Suma de dos números de 16 bits
; ---------------------------------------------------------------------
; Propósito: sumar en dos veces lo que no cabe en un byte, pasando el
;            acarreo de la parte baja a la alta con ADC.
; Antes:     1000H-1001H y 1002H-1003H, los sumandos, el byte bajo
;            primero (aquí 12C8H y F064H).
; Resultado: 2000H-2001H, la suma (byte bajo primero); 2002H, el acarreo.
;              (2000H) = 2CH
;              (2001H) = 03H
;              (2002H) = 01H
; Pregunta:  escribe la misma suma con LHLD, XCHG y DAD. ¿Cuántos bytes
;            ahorra? ¿Qué indicadores deja sin cambiar DAD?
; ---------------------------------------------------------------------

        ORG  0000H

INICIO: LXI  H,NUM1
        LXI  D,NUM2
        LDAX D              ; bytes bajos
        ADD  M
        STA  SUMA
        INX  H              ; INX no cambia ningún indicador:
        INX  D              ; el acarreo sigue en CY
        LDAX D              ; bytes altos
        ADC  M              ; ... y se suma aquí
        STA  SUMA+1
        MVI  A,0            ; MVI tampoco lo cambia (XRA A lo borraría)
        ACI  0              ; A = acarreo final, 0 o 1
        STA  SUMA+2
        HLT

        ORG  1000H
NUM1:   DFW  12C8H
NUM2:   DFW  0F064H

SUMA:   EQU  2000H

        END
