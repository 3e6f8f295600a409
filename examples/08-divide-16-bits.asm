; ---------------------------------------------------------------------
; 08  División de 16 entre 16 bits
; ---------------------------------------------------------------------
; Propósito: dividir restando y desplazando. Los bits del dividendo pasan
;            de BC al resto, en HL, de uno en uno; cada vez que el divisor
;            cabe en el resto, se resta y entra un 1 en el cociente.
; Antes:     1000H-1001H, dividendo; 1002H-1003H, divisor; byte bajo
;            primero (aquí 60000 y 7).
; Resultado: 2000H-2001H, cociente; 2002H-2003H, resto; 2004H, 00H, o FFH
;            si el divisor es 0 (entonces no se escribe nada más). Son
;            8571 = 217BH y 3.
;              (2000H) = 7BH
;              (2001H) = 21H
;              (2002H) = 03H
;              (2003H) = 00H
;              (2004H) = 00H
; Pregunta:  tras desplazar HL y BC, ¿puede quedar CY = 1? Piensa en lo
;            mayor que puede ser el resto antes del último paso, según que
;            el divisor sea mayor que 8000H o no.
; ---------------------------------------------------------------------

        ORG  0000H

INICIO: LHLD DIVSOR
        XCHG                ; DE = divisor
        MOV  A,D
        ORA  E
        JZ   ERROR
        LHLD DIVNDO
        MOV  B,H
        MOV  C,L            ; BC = dividendo, y luego cociente
        LXI  H,0            ; HL = resto
        MVI  A,16
        STA  FALTAN
BUCLE:  MOV  A,C            ; HL y BC, un lugar a la izquierda;
        ADD  A              ; en C entra un 0
        MOV  C,A
        MOV  A,B
        ADC  A
        MOV  B,A
        MOV  A,L
        ADC  A
        MOV  L,A
        MOV  A,H
        ADC  A
        MOV  H,A
        MOV  A,L            ; ¿es HL menor que DE? Se resta sin guardar
        SUB  E
        MOV  A,H
        SBB  D
        JC   SIGUE          ; menor: no cabe
        MOV  A,L            ; cabe: ahora se resta de verdad
        SUB  E
        MOV  L,A
        MOV  A,H
        SBB  D
        MOV  H,A
        INR  C              ; el 0 que entró pasa a ser 1
SIGUE:  LDA  FALTAN
        DCR  A
        STA  FALTAN
        JNZ  BUCLE
        SHLD RESTO
        MOV  H,B
        MOV  L,C
        SHLD COCIEN
        XRA  A
        STA  AVISO
        HLT
ERROR:  MVI  A,0FFH
        STA  AVISO
        HLT

        ORG  1000H
DIVNDO: DFW  60000
DIVSOR: DFW  7

COCIEN: EQU  2000H
RESTO:  EQU  2002H
AVISO:  EQU  2004H
FALTAN: EQU  2010H

        END
