; one report for each earlier one: none, one, two
A: NOP
B: NOP
A: NOP
A: NOP
