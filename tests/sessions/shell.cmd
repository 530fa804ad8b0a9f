! What the shell answers alone: limits, settings of tests, refusals, help. It would catch a changed
! word of a message, a number of a setting read from the wrong place, a need that is not tested.
SHO L
EXA 1000 300
SHO E
REP 500 9 50 1
REP 500 9 50
SHO E
SEQ 1000 9 30
EXA2000
EXA
ASY
LOC
PAR
SHO E
GLO
NPA
TWO
ONE
DEV
POW
CHI
AUT
AUT
TES
TAB AB
HYP AB
FIS
HOM
CMH
SHO T
SHO
DIS
CUT 1
GRM
ITA
RAS
STA
SCR I
SCR E
DIF
ROS
LDE
IPR
PBO
ab
QV1
INV
loc ?
exa ?
sequential ?
LOC?
? TAB

0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9
$TAB AB
