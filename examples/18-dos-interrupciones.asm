; ---------------------------------------------------------------------
; 18  Dos interrupciones, una dentro de otra
; ---------------------------------------------------------------------
; Propósito: una rutina larga (RST 5.5) que se deja interrumpir por otra
;            urgente (RST 6.5), pero no por sí misma: guarda las máscaras
;            con RIM, tapa su propia línea con SIM y vuelve a habilitar
;            con EI. Al terminar deja las máscaras como estaban.
; Antes:     1000H, cuántas tandas hay que hacer (aquí 2). Pon el programa
;            en marcha con SID sin marcar. Pulsa RST 5.5: la tanda espera
;            a SID, y el botón RST 5.5 queda apagado. Pulsa RST 6.5 una
;            vez, que se atiende en medio. Marca SID, y la tanda acaba.
;            Quita SID y haz lo mismo otra vez.
; Resultado: 2000H, tandas hechas; 2001H y puerto 02H, urgencias; 2002H,
;            urgencias atendidas en medio de una tanda. Hechas las tandas,
;            el programa se para.
;              (2000H) = 02H
;              (2001H) = 02H
;              (2002H) = 02H
;              puerto 02H = 02H
; Pregunta:  quita el EI de TANDA y repite la prueba. ¿Qué botones quedan
;            apagados mientras la tanda espera? ¿Por qué hace falta el DI
;            antes de devolver las máscaras?
; ---------------------------------------------------------------------
; RIM da en los bits 0, 1 y 2 las máscaras, y en otros bits cosas que SIM
; entendería como órdenes (en este simulador, el bit 4 es la petición de
; RST 7.5 y en SIM la borra). Por eso se apartan con ANI.

URGENT: EQU  02H            ; puerto
PILA:   EQU  4000H

        ORG  0000H          ; RESET
        JMP  INICIO

        ORG  002CH          ; RST 5.5
        JMP  TANDA

        ORG  0034H          ; RST 6.5
        JMP  URGE

        ORG  0040H

INICIO: LXI  SP,PILA
        XRA  A
        STA  HECHAS
        STA  URGES
        STA  ENMEDI
        STA  DENTRO
        OUT  URGENT
        MVI  A,00001100B    ; bit 3: mover máscaras; deja pasar 5.5 y 6.5
        SIM
        LDA  PEDIDA
        MOV  B,A
        EI
ESPERA: LDA  HECHAS
        CMP  B
        JC   ESPERA         ; JNZ no vería dos tandas seguidas
        DI
        HLT

; TANDA: espera a SID y cuenta una tanda. No cambia ningún registro.
TANDA:  PUSH PSW
        RIM
        ANI  00000111B      ; solo las máscaras
        PUSH PSW
        ORI  00001001B      ; bit 3: mover máscaras; bit 0: tapar 5.5
        SIM
        MVI  A,1
        STA  DENTRO
        EI                  ; desde aquí puede entrar RST 6.5
PIEZA:  RIM
        ORA  A              ; SID está en el bit 7, el signo
        JP   PIEZA
        LDA  HECHAS
        INR  A
        STA  HECHAS
        DI                  ; hasta el EI del final, nadie entra
        XRA  A
        STA  DENTRO
        POP  PSW            ; las máscaras de antes
        ORI  00001000B      ; bit 3: mover máscaras
        SIM
        POP  PSW
        EI
        RET

; URGE: cuenta una urgencia. No cambia ningún registro.
URGE:   PUSH PSW
        LDA  URGES
        INR  A
        STA  URGES
        OUT  URGENT
        LDA  DENTRO
        ORA  A
        JZ   SOLA
        LDA  ENMEDI
        INR  A
        STA  ENMEDI
SOLA:   POP  PSW
        EI
        RET

        ORG  1000H
PEDIDA: DFB  2

HECHAS: EQU  2000H
URGES:  EQU  2001H
ENMEDI: EQU  2002H
DENTRO: EQU  2003H

        END
