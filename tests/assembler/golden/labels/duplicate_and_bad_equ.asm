; the duplicate is reported before the value
N: EQU 1
N: EQU X
