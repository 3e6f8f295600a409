; ---------------------------------------------------------------------
; 03  Bucle de retardo
; ---------------------------------------------------------------------
; Propósito: encender y apagar ocho luces, dejando pasar un tiempo entre
;            cambio y cambio con un bucle que solo cuenta.
; Antes:     1000H-1001H, vueltas de cada espera (aquí 0010H);
;            1002H, número de cambios (aquí 5).
; Resultado: el puerto 01H pasa de FFH a 00H y otra vez a FFH; con un
;            número impar de cambios termina encendido.
;              puerto 01H = FFH
; Pregunta:  DCX no cambia los indicadores. ¿Qué dos instrucciones
;            averiguan si DE ya es cero? ¿Cuántas vueltas da la espera
;            si se pone 0000H?
; ---------------------------------------------------------------------
; En un 8085 con un reloj de 3 MHz cada vuelta de la espera dura 24
; estados (6 + 4 + 4 + 10), es decir, 8 microsegundos. El simulador no
; cuenta estados: ejecuta tan deprisa como puede.

LUCES:  EQU  01H

        ORG  0000H

INICIO: LDA  VECES
        MOV  C,A            ; C = cambios que faltan
        MVI  B,00H          ; B = estado de las luces, apagadas
CAMBIO: MOV  A,B
        CMA                 ; las que estaban apagadas se encienden
        MOV  B,A            ; y al revés
        OUT  LUCES
        LHLD VUELTA
        XCHG                ; DE = vueltas de la espera
ESPERA: DCX  D
        MOV  A,D
        ORA  E              ; Z = 1 solo cuando D y E son 0
        JNZ  ESPERA
        DCR  C
        JNZ  CAMBIO
        HLT

        ORG  1000H
VUELTA: DFW  0010H
VECES:  DFB  5

        END
