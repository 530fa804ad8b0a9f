! Item models by GRM: refusals, the Rasch model, terms and the comparison of nested models, what is
! estimated again and what not, the dialogue and how it is left, interactions with the score, the
! fallback to sweeps, incomplete responses, ordered thresholds, and limits.
GRM
CHD verbal
OPE verbal
ITA 11
ITEMS ABCDEF
EXO ZY
GRM
GRM AB CD BY DY
GRM
CUR
ITA 11 9 57
MEA
GRM -CD +XX
AGA
GLL
EST
CUT 0 2 5 12
GRM AB A#
CON 0.01
MIN many
EST
CON
MIN 50
GRM ?
HELP ORDERED
EXI
CUR
ITEMS ACGIMSU
GRM AC AG AI CI GI
LLR
ITEMS ABCDEFGHIJKLMNOP
GRM AB BC CD DE EF FG GH HI IJ JK KL LM MN
GLL
CHD ../survey
OPE survey
Y
ITEMS EPKH
EXO S
GRM PS
Y
GRM
ORD ON
EST
ORD OFF
EST
