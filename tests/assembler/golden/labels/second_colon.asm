; only the first colon ends a label
A: B: NOP
