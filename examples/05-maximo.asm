; ---------------------------------------------------------------------
; 05  Máximo de una tabla
; ---------------------------------------------------------------------
; Propósito: comparar con CMP y decidir con el acarreo: tras CMP M hay
;            CY = 1 cuando A es menor que el byte de memoria.
; Antes:     1000H, número de elementos, de 1 a 255 (aquí 10);
;            desde 1001H, los elementos, sin signo.
; Resultado: 2000H, el mayor; 2001H, el lugar que ocupa (el primero es
;            el 0; si está repetido, el primero de ellos).
;              (2000H) = E7H
;              (2001H) = 04H
; Pregunta:  ¿qué salto hay que cambiar para obtener el mínimo? ¿Y para
;            quedarse con el último de los repetidos?
; ---------------------------------------------------------------------
; En este simulador CMP y CPI dejan siempre AC = 0; en el 8085, AC sale
; de la resta de las mitades bajas. CY, Z, S y P son los mismos.

        ORG  0000H

INICIO: LDA  NUMERO
        MOV  B,A            ; B = elementos que faltan
        LXI  H,TABLA
        MOV  A,M            ; A = mayor hasta ahora: el primero
        MVI  C,0            ; C = lugar que se mira
        MVI  D,0            ; D = lugar del mayor
BUCLE:  CMP  M
        JNC  SIGUE          ; A no es menor: se queda
        MOV  A,M
        MOV  D,C
SIGUE:  INX  H
        INR  C
        DCR  B
        JNZ  BUCLE
        STA  MAYOR
        MOV  A,D
        STA  LUGAR
        HLT

        ORG  1000H
NUMERO: DFB  10
TABLA:  DFB  12H,0A0H,7FH,80H,0E7H,05H,0E7H,00H,3CH,0E6H

MAYOR:  EQU  2000H
LUGAR:  EQU  2001H

        END
