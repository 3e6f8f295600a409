; with an operand the mnemonic must be whole, where no comma ends the key
 J MP 100H
 M VI A,5
