 HOLA ; ñ
