; ---------------------------------------------------------------------
; 19  Autoprueba de los indicadores
; ---------------------------------------------------------------------
; Propósito: ejecutar ocho instrucciones con datos conocidos y comparar
;            los indicadores que dejan con los de este simulador y con
;            los de un 8085. El código que se prueba se escribe en medio
;            del programa: un programa que se cambia a sí mismo.
; Antes:     desde 1000H, una fila de seis bytes por prueba: código, A, B
;            y F de partida, F en el simulador y F en el 8085. Un código
;            00H termina la tabla.
; Resultado: desde 2000H, un byte por prueba: bit 0 a 1 si F es el del
;            simulador, bit 1 a 1 si es el del 8085. 03H es que los dos
;            hacen lo mismo; aquí 01H señala una diferencia, y en un 8085
;            sería 02H. En 2010H, cuántas pruebas no dieron 03H.
;              (2000H) = 03H
;              (2001H) = 03H
;              (2002H) = 01H
;              (2003H) = 03H
;              (2004H) = 01H
;              (2005H) = 03H
;              (2006H) = 01H
;              (2007H) = 01H
;              (2010H) = 04H
; Pregunta:  ¿qué cuatro pruebas señalan una diferencia, y en qué bits de
;            F? Añade una fila que pruebe ORA B. ¿Por qué el código 00H no
;            se puede probar así?
; ---------------------------------------------------------------------
; En F, de los bits 7 a 0: S, Z, un bit sin uso, AC, otro sin uso, P, otro
; sin uso y CY. Los que no se usan se apartan con ANI antes de comparar,
; porque un 8085 deja en ellos lo que quiere.

PILA:   EQU  4000H
USADOS: EQU  0D5H           ; S, Z, AC, P y CY

        ORG  0000H

INICIO: LXI  SP,PILA
        XRA  A
        STA  DISTIN
        LXI  H,TABLA
        LXI  D,INFORM
PRUEBA: MOV  A,M
        ORA  A
        JZ   FIN
        STA  CELDA          ; el código, a su sitio en el programa
        INX  H
        MOV  A,M            ; A de partida
        INX  H
        MOV  B,M            ; B
        INX  H
        MOV  C,M            ; F
        INX  H
        PUSH B
        MOV  B,A
        PUSH B              ; A y F, como los guarda PUSH PSW
        POP  PSW
        POP  B
CELDA:  NOP                 ; aquí se escribe la instrucción que se prueba
        PUSH PSW
        POP  B              ; C = los indicadores que ha dejado
        MOV  A,C
        ANI  USADOS
        MOV  C,A
        MVI  B,0
        CMP  M              ; los del simulador
        JNZ  CHIP
        INR  B
CHIP:   INX  H
        MOV  A,C
        CMP  M              ; los del 8085
        JNZ  ANOTA
        INR  B
        INR  B
ANOTA:  INX  H
        MOV  A,B
        STAX D
        INX  D
        CPI  3
        JZ   PRUEBA
        LDA  DISTIN
        INR  A
        STA  DISTIN
        JMP  PRUEBA
FIN:    STA  CELDA          ; A = 00H: el programa queda como estaba
        HLT

        ORG  1000H
;            código  A    B    F   sim. 8085
TABLA:  DFB  080H,0FFH,01H,00H,055H,055H        ; ADD B
        DFB  090H,  3EH,3EH,00H,054H,054H       ; SUB B
        DFB  0B8H,  3EH,3EH,00H,044H,054H       ; CMP B
        DFB  03CH,  0FH,00H,01H,011H,011H       ; INR A
        DFB  03DH,  11H,00H,00H,000H,010H       ; DCR A
        DFB  0A0H,  0FH,05H,01H,014H,014H       ; ANA B
        DFB  027H,  9AH,00H,00H,045H,055H       ; DAA
        DFB  027H,  00H,00H,50H,054H,004H       ; DAA, con Z y AC a 1
        DFB  00H

INFORM: EQU  2000H
DISTIN: EQU  2010H

        END
