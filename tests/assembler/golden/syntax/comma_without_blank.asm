; the mnemonic needs a blank before its operands
MOVA,B
MVIA,5
DFB,1
,
