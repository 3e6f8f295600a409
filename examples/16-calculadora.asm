; ---------------------------------------------------------------------
; 16  Diálogo por puertos y tabla de saltos
; ---------------------------------------------------------------------
; Propósito: obedecer órdenes que llegan por un puerto. Cada orden es un
;            número, y una tabla de direcciones dice adónde saltar: PCHL
;            lleva a PC la dirección leída.
; Antes:     pon el programa en marcha y escribe en los puertos: en el 00H
;            un dato y después en el 01H una orden (1 sumar, 2 restar, 3
;            borrar, 4 terminar). El programa avisa de que la ha cumplido
;            poniendo otra vez 00H en el puerto 01H. Haz esta sesión: dato
;            25H y orden 1; dato 10H y orden 2; orden 9; orden 4.
; Resultado: puerto 02H y 2000H, el total; puerto 03H, FFH si la última
;            orden antes de terminar no existía y 00H si existía; 2001H,
;            cuántas órdenes se han cumplido, sin contar la de terminar.
;              puerto 01H = 00H
;              puerto 02H = 15H
;              puerto 03H = FFH
;              (2000H) = 15H
;              (2001H) = 02H
; Pregunta:  añade la orden 5, que dobla el total. ¿Qué tres cosas hay que
;            cambiar? ¿Qué ocurriría con la orden 9 sin CPI ORDENS?
; ---------------------------------------------------------------------
; Que el programa pueda borrar la orden se debe a que aquí un mismo puerto
; sirve de entrada y de salida. En un circuito harían falta una línea de
; aviso y otra de respuesta.

DATO:   EQU  00H
ORDEN:  EQU  01H
VISOR:  EQU  02H
AVISO:  EQU  03H
ORDENS: EQU  5              ; direcciones de la tabla

        ORG  0000H

INICIO: XRA  A
        STA  TOTAL
        STA  VECES
        OUT  VISOR
        OUT  AVISO
        OUT  ORDEN
ESPERA: IN   ORDEN
        ORA  A
        JZ   ESPERA
        CPI  ORDENS
        JNC  MALA           ; no está en la tabla
        LXI  H,TABLA
        MOV  E,A
        MVI  D,0
        DAD  D
        DAD  D              ; HL = TABLA + 2 por la orden
        MOV  E,M
        INX  H
        MOV  D,M
        XCHG                ; HL = dirección de la rutina
        PCHL                ; y a ella

SUMAR:  IN   DATO
        MOV  B,A
        LDA  TOTAL
        ADD  B
        JMP  HECHO

RESTAR: IN   DATO
        MOV  B,A
        LDA  TOTAL
        SUB  B
        JMP  HECHO

BORRAR: XRA  A

HECHO:  STA  TOTAL          ; todas acaban aquí, con el total en A
        OUT  VISOR
        LXI  H,VECES
        INR  M
        XRA  A
        OUT  AVISO
OTRA:   XRA  A
        OUT  ORDEN          ; orden cumplida
        JMP  ESPERA

MALA:   MVI  A,0FFH
        OUT  AVISO
        JMP  OTRA

FIN:    XRA  A
        OUT  ORDEN
        HLT

; Adónde saltar con cada orden. La 0 no llega nunca a la tabla.
TABLA:  DFW  ESPERA,SUMAR,RESTAR,BORRAR,FIN

TOTAL:  EQU  2000H
VECES:  EQU  2001H

        END
