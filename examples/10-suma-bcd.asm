; ---------------------------------------------------------------------
; 10  Suma decimal (BCD) de varias cifras
; ---------------------------------------------------------------------
; Propósito: sumar números decimales de dos cifras por byte con ADC y DAA,
;            llevando el acarreo de un byte al siguiente.
; Antes:     1000H, bytes de cada número, de 1 a 16 (aquí 4, es decir, 8
;            cifras); desde 1010H y desde 1020H, los números, las dos
;            cifras bajas primero (aquí 12345678 y 91827367).
; Resultado: desde 2000H, la suma, las cifras bajas primero; en 2010H, la
;            cifra que se lleva al final (104173045 en total).
;              (2000H) = 45H
;              (2001H) = 30H
;              (2002H) = 17H
;              (2003H) = 04H
;              (2010H) = 01H
; Pregunta:  el último byte es 04H, pero antes de DAA era A4H. ¿Qué le
;            sumó DAA? ¿Qué instrucciones hay entre un ADC y el siguiente,
;            y por qué ninguna pierde el acarreo?
; ---------------------------------------------------------------------
; En este simulador DAA solo pone indicadores a 1, nunca a 0, y no toca
; AC: tras DAA, los 1 de S, Z y P pueden venir de la suma anterior. Prueba
; 67H + 99H con un byte por número: la suma binaria es 00H, con Z = 1; DAA
; da 66H y Z sigue a 1. En el 8085 quedaría Z = 0. CY sí vale, con tal de
; que la instrucción anterior a DAA sea ADD, ADC, ADI o ACI: la suma lo
; calcula de nuevo. INR no lo calcula, y un CY antiguo haría que DAA
; sumase 60H de más.

        ORG  0000H

INICIO: LDA  NUMERO
        STA  FALTAN
        LXI  D,NUM1
        LXI  H,NUM2
        LXI  B,SUMA
        XRA  A              ; CY = 0: al principio no se lleva nada
BUCLE:  LDAX D
        ADC  M              ; suma binaria de dos cifras con dos cifras
        DAA                 ; ajuste decimal
        STAX B
        INX  D
        INX  H
        INX  B
        LDA  FALTAN
        DCR  A
        STA  FALTAN
        JNZ  BUCLE
        MVI  A,0
        RAL                 ; A = lo que se lleva, 0 o 1
        STA  ACARRE
        HLT

        ORG  1000H
NUMERO: DFB  4

        ORG  1010H
NUM1:   DFB  78H,56H,34H,12H

        ORG  1020H
NUM2:   DFB  67H,73H,82H,91H

SUMA:   EQU  2000H
ACARRE: EQU  2010H
FALTAN: EQU  2011H

        END
