; ---------------------------------------------------------------------
; 09  Ordenación por el método de la burbuja
; ---------------------------------------------------------------------
; Propósito: ordenar una tabla de menor a mayor con dos bucles, uno dentro
;            de otro, e intercambiar dos bytes vecinos de la memoria.
; Antes:     1000H, número de elementos, de 0 a 255 (aquí 8);
;            desde 1001H, los elementos, sin signo.
; Resultado: la misma tabla, ordenada.
;              (1000H) = 08H
;              (1001H) = 00H
;              (1002H) = 01H
;              (1003H) = 07H
;              (1004H) = 2AH
;              (1005H) = 2AH
;              (1006H) = 7FH
;              (1007H) = 80H
;              (1008H) = FFH
; Pregunta:  tras cada pasada el mayor queda en su sitio. ¿Cómo se puede
;            acortar la pasada siguiente? ¿Qué ocurre si se quita JZ BIEN
;            y la tabla tiene elementos repetidos?
; ---------------------------------------------------------------------

        ORG  0000H

INICIO: LDA  NUMERO
        CPI  2
        JC   FIN            ; con 0 o 1 elementos no hay nada que ordenar
PASADA: LDA  NUMERO
        DCR  A
        MOV  B,A            ; B = parejas que faltan
        MVI  C,0            ; C = 1 si ha habido algún cambio
        LXI  H,TABLA
PAREJA: MOV  A,M
        INX  H
        CMP  M
        JC   BIEN           ; menor que el siguiente
        JZ   BIEN           ; igual
        MOV  D,M            ; mayor: se cambian
        MOV  M,A
        DCX  H
        MOV  M,D
        INX  H
        MVI  C,1
BIEN:   DCR  B
        JNZ  PAREJA
        MOV  A,C
        ORA  A
        JNZ  PASADA         ; hasta una pasada entera sin cambios
FIN:    HLT

        ORG  1000H
NUMERO: DFB  8
TABLA:  DFB  80H,2AH,0FFH,01H,7FH,00H,2AH,07H

        END
