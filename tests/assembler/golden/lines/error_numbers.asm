 NOP
 HOLA ; line 2

; line 4
 HOLA ; line 5
