; ---------------------------------------------------------------------
; 15  Subrutinas con parámetros en la pila
; ---------------------------------------------------------------------
; Propósito: pasar los datos de una subrutina por la pila, leerlos sin
;            sacarlos con DAD SP y devolver el resultado en el hueco del
;            primer parámetro. La subrutina no cambia BC ni DE.
; Antes:     1000H-1001H y 1002H-1003H, cuántos elementos hay en cada
;            tabla (aquí 4 y 3; pueden ser 0); desde 1010H y desde 1110H,
;            los elementos, bytes sin signo.
; Resultado: 2000H-2001H y 2002H-2003H, la suma de cada tabla en 16 bits,
;            byte bajo primero (03FCH y 0006H). SP queda como empezó.
;              (2000H) = FCH
;              (2001H) = 03H
;              (2002H) = 06H
;              (2003H) = 00H
; Pregunta:  para en SUMAR con un punto de ruptura y busca en PILA los dos
;            parámetros y la dirección de retorno. ¿Qué le pasa a SP si el
;            programa olvida uno de los POP H? ¿Cómo podría quitar los
;            parámetros la propia subrutina, antes de volver?
; ---------------------------------------------------------------------

PILA:   EQU  4000H

        ORG  0000H

INICIO: LXI  SP,PILA
        LXI  H,TABLA1
        PUSH H              ; primer parámetro: la dirección
        LHLD NUM1
        PUSH H              ; segundo parámetro: cuántos
        CALL SUMAR
        POP  H              ; se tira el segundo ...
        POP  H              ; ... y en el hueco del primero está la suma
        SHLD SUMA1
        LXI  H,TABLA2
        PUSH H
        LHLD NUM2
        PUSH H
        CALL SUMAR
        POP  H
        POP  H
        SHLD SUMA2
        HLT

; SUMAR: suma de una tabla. Al entrar, en la pila, de arriba abajo:
;   SP+0  dirección de retorno
;   SP+2  cuántos elementos
;   SP+4  dirección de la tabla; al salir, la suma
; Cambia A, HL y los indicadores.
SUMAR:  PUSH B              ; dos palabras más: los parámetros están
        PUSH D              ; ahora en SP+6 y SP+8
        LXI  H,6
        DAD  SP             ; HL = dirección del segundo parámetro
        MOV  C,M
        INX  H
        MOV  B,M            ; BC = cuántos
        INX  H
        MOV  E,M
        INX  H
        MOV  D,M            ; DE = dirección de la tabla
        PUSH H              ; aquí se dejará la suma
        LXI  H,0
BUCLE:  MOV  A,B
        ORA  C
        JZ   LISTO
        LDAX D
        ADD  L
        MOV  L,A
        MVI  A,0            ; MVI no cambia CY
        ADC  H
        MOV  H,A
        INX  D
        DCX  B
        JMP  BUCLE
LISTO:  XCHG                ; DE = suma
        POP  H
        MOV  M,D            ; HL apunta al byte alto del hueco
        DCX  H
        MOV  M,E
        POP  D
        POP  B
        RET

        ORG  1000H
NUM1:   DFW  4
NUM2:   DFW  3

        ORG  1010H
TABLA1: DFB  0FFH,0FFH,0FFH,0FFH

        ORG  1110H
TABLA2: DFB  1,2,3

SUMA1:  EQU  2000H
SUMA2:  EQU  2002H

        END
