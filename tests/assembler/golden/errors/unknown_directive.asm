 DB 1
 DW 2
 DS 3
 .ORG 5
 TITLE X
