; RST 5 gives DF on purpose; no instruction gives EF
 RST 0
 RST 1
 RST 2
 RST 3
 RST 4
 RST 5
 RST 6
 RST 7
