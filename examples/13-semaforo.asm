; ---------------------------------------------------------------------
; 13  Puertos: semáforo con pulsador
; ---------------------------------------------------------------------
; Propósito: esperar una entrada con IN y ANI, y recorrer una tabla de
;            estados que se sacan por un puerto con OUT.
; Antes:     puerto 00H, entradas: bit 0, pulsador de peatones; bit 7, fin
;            de la jornada. Escribe 01H en el puerto mientras el programa
;            se ejecuta, y más tarde 80H para terminar.
; Resultado: puerto 01H, luces: bits 0, 1 y 2, rojo, ámbar y verde de los
;            coches; bits 4 y 5, rojo y verde de los peatones. Con el
;            pulsador pasa de 14H a 12H, 21H y 11H, y vuelve a 14H. Con el
;            fin queda en ámbar para los coches y apagado lo demás.
;              puerto 01H = 02H
; Pregunta:  ¿qué ocurre si el pulsador no se suelta? ¿Y si se pide el fin
;            con el verde de los peatones encendido? Añade a la tabla un
;            estado en que se apague un momento el verde de los peatones.
; ---------------------------------------------------------------------
; El simulador guarda entradas y salidas en los mismos 256 puertos: un IN
; lee lo último que se escribió en ese número, desde el programa o a mano.
; Por eso las entradas y las luces tienen aquí números distintos.

ENTRAD: EQU  00H
LUCES:  EQU  01H
PASO:   EQU  14H            ; coches verde, peatones rojo
AVERIA: EQU  02H            ; solo el ámbar
ESTADS: EQU  3              ; estados de la tabla
PILA:   EQU  4000H

        ORG  0000H

INICIO: LXI  SP,PILA
VERDE:  MVI  A,PASO
        OUT  LUCES
ESPERA: IN   ENTRAD
        ORA  A              ; el bit 7 es el signo
        JM   FIN
        ANI  01H
        JZ   ESPERA
        LXI  H,TABLA
        MVI  C,ESTADS
ESTADO: MOV  A,M            ; luces
        OUT  LUCES
        INX  H
        MOV  B,M            ; duración
        INX  H
        CALL RETARD
        DCR  C
        JNZ  ESTADO
        JMP  VERDE
FIN:    MVI  A,AVERIA
        OUT  LUCES
        HLT

; RETARD: espera B veces 20 vueltas. Deja B y D a 0.
RETARD: MVI  D,20
VUELTA: DCR  D
        JNZ  VUELTA
        DCR  B
        JNZ  RETARD
        RET

; Luces y duración de cada estado.
TABLA:  DFB  12H,2          ; coches ámbar, peatones rojo
        DFB  21H,5          ; coches rojo, peatones verde
        DFB  11H,1          ; todos en rojo

        END
