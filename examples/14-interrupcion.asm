; ---------------------------------------------------------------------
; 14  Interrupciones: contador de pulsos con RST 7.5
; ---------------------------------------------------------------------
; Propósito: atender RST 7.5 con una rutina que no estropea el programa
;            interrumpido; permitir la línea con SIM, leer SID con RIM y
;            mover SOD con SIM. TRAP sirve de parada de emergencia.
; Antes:     1000H, cuenta final en BCD (aquí 05H). Pon el programa en
;            marcha y pulsa RST 7.5. Con SID a 0 cada pulso suma 1; con
;            SID a 1 resta 1.
; Resultado: puerto 01H y 2000H, la cuenta, de 00H a 99H; SOD cambia con
;            cada pulso, y su estado se guarda en el bit 7 de 2001H. Al
;            llegar a la cuenta final el programa se para.
;              (2000H) = 05H
;              (2001H) = 80H
;              puerto 01H = 05H
;            Con TRAP se para en seguida y deja EEH en el puerto.
; Pregunta:  quita PUSH PSW y POP PSW: ¿en qué instrucciones del programa
;            principal haría daño un pulso? ¿Por qué INR A seguido de DAA
;            no sirve para contar en decimal?
; ---------------------------------------------------------------------
; Diferencias de este simulador con el 8085:
; - al atender RST 7.5 la petición queda apuntada, en lugar de borrarse;
;   hay que borrarla con el bit 4 de SIM, o al permitir otra vez la línea
;   desde la ventana se atendería de nuevo;
; - RIM da esa petición en el bit 4, y en los bits 5 y 6 siempre 0;
; - EI actúa en el acto, sin esperar a la instrucción siguiente.

VISOR:  EQU  01H            ; puerto de salida
PILA:   EQU  4000H
FALLO:  EQU  0EEH

        ORG  0000H          ; RESET
        JMP  INICIO

        ORG  0024H          ; TRAP
        JMP  PARADA

        ORG  003CH          ; RST 7.5
        JMP  PULSO

        ORG  0040H

INICIO: LXI  SP,PILA
        XRA  A
        STA  CUENTA
        STA  LINEA
        OUT  VISOR
        MVI  A,01011011B    ; SOD = 0; borra la petición; enmascara 5.5
        SIM                 ; y 6.5, y deja pasar 7.5
        LDA  FINAL
        MOV  B,A
        EI
ESPERA: LDA  CUENTA
        CMP  B
        JNZ  ESPERA
        DI
        HLT

; PULSO: un pulso más, o menos. No cambia ningún registro.
PULSO:  PUSH PSW
        PUSH B
        MVI  B,01H          ; sumar 1
        RIM
        ORA  A              ; SID está en el bit 7, el signo
        JP   SUMA
        MVI  B,99H          ; en dos cifras, sumar 99 es restar 1
SUMA:   LDA  CUENTA
        ADD  B
        DAA
        STA  CUENTA
        OUT  VISOR
        LDA  LINEA
        XRI  10000000B      ; SOD, al revés que antes
        STA  LINEA
        ORI  01010000B      ; bit 6: mover SOD; bit 4: borrar la petición
        SIM
        POP  B
        POP  PSW
        EI
        RET

PARADA: DI
        MVI  A,FALLO
        OUT  VISOR
        HLT

        ORG  1000H
FINAL:  DFB  05H

CUENTA: EQU  2000H
LINEA:  EQU  2001H

        END
