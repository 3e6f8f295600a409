; without a comma the key itself may be written as one word
ADDB
PUSHPSW
RST7
DADSP
NOP
