; ---------------------------------------------------------------------
; 11  Búsqueda de una cadena en un texto
; ---------------------------------------------------------------------
; Propósito: comparar dos zonas de memoria carácter a carácter, y volver a
;            empezar un lugar más allá cuando se encuentra una diferencia.
; Antes:     desde 1000H, el texto, y desde 1100H, la cadena, en ASCII y
;            terminados por un 00H que no cuenta (aquí "EL 8080 Y EL 8085"
;            y "8085").
; Resultado: 2000H-2001H, la dirección donde empieza la cadena por primera
;            vez (byte bajo primero), o FFFFH si no está.
;              (2000H) = 0DH
;              (2001H) = 10H
; Pregunta:  con el texto "AAAB" y la cadena "AAB", ¿por qué hay que volver
;            atrás en el texto, a BC + 1, en lugar de seguir en HL?
; ---------------------------------------------------------------------

        ORG  0000H

INICIO: LXI  B,TEXTO        ; BC = comienzo que se prueba
PRUEBA: MOV  H,B
        MOV  L,C            ; HL recorre el texto
        LXI  D,CADENA       ; DE recorre la cadena
LETRA:  LDAX D
        ORA  A
        JZ   HALLAD         ; se acabó la cadena: todo ha coincidido
        CMP  M
        JNZ  OTRA
        INX  H
        INX  D
        JMP  LETRA
OTRA:   MOV  A,M            ; si lo que no coincide es el final del texto,
        ORA  A              ; más allá tampoco cabe
        JZ   NOESTA
        INX  B
        JMP  PRUEBA
NOESTA: LXI  B,0FFFFH
HALLAD: MOV  H,B
        MOV  L,C
        SHLD LUGAR
        HLT

        ORG  1000H
TEXTO:  DFB  45H,4CH,20H                ; EL
        DFB  38H,30H,38H,30H,20H        ; 8080
        DFB  59H,20H                    ; Y
        DFB  45H,4CH,20H                ; EL
        DFB  38H,30H,38H,35H,00H        ; 8085

        ORG  1100H
CADENA: DFB  38H,30H,38H,35H,00H        ; 8085

LUGAR:  EQU  2000H

        END
