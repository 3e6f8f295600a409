; blanks inside the mnemonic disappear where the whole text is a key
 N O P
 X C H G
 MO V A,B
 E ND
 H OF
