; ---------------------------------------------------------------------
; 04  Copia de un bloque de memoria
; ---------------------------------------------------------------------
; Propósito: recorrer dos zonas de memoria a la vez con los pares HL y DE
;            como punteros y BC como contador de 16 bits.
; Antes:     1000H-1001H, dirección de origen (aquí 1010H);
;            1002H-1003H, dirección de destino (aquí 2000H);
;            1004H-1005H, número de bytes (aquí 8; puede ser 0).
; Resultado: los bytes de origen, repetidos en el destino.
;              (2000H) = 01H
;              (2001H) = 02H
;              (2002H) = 04H
;              (2003H) = 08H
;              (2006H) = 40H
;              (2007H) = 80H
; Pregunta:  pon 1011H como destino. ¿Por qué se repite siempre el
;            primer byte? ¿En qué orden habría que copiar?
; ---------------------------------------------------------------------

        ORG  0000H

INICIO: LHLD CUENTA
        MOV  B,H
        MOV  C,L            ; BC = bytes que faltan
        LHLD DESTIN
        XCHG                ; DE = destino
        LHLD ORIGEN         ; HL = origen
BUCLE:  MOV  A,B            ; se pregunta antes de copiar, de modo que
        ORA  C              ; con cuenta 0 no se copia nada
        JZ   FIN
        MOV  A,M
        STAX D
        INX  H
        INX  D
        DCX  B
        JMP  BUCLE
FIN:    HLT

        ORG  1000H
ORIGEN: DFW  DATOS
DESTIN: DFW  2000H
CUENTA: DFW  8

        ORG  1010H
DATOS:  DFB  01H,02H,04H,08H,10H,20H,40H,80H

        END
