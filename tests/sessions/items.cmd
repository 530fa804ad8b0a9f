! Items and their model: selection, score groups in all forms, terms, pictures, saving and running the file.
CHD verbal
OPE verbal
SHO I
CUT 3
GLL
ITE A
ITE AZY
EXO ZY
ITE AB-CDZ
EXO ABZY
SHO I
Y
SHO S
Y
GLL
LLR AB CD BY DY
GLL
LLR -AB +AC +CY EF +ZY
LLR +A#
ICO
COM
CUT 10 5
CUT 999
CUT 0 999
CUT abc
CUT 3
CUT 0 2 4 8
CUT 2 6
CUT #40
CUT /3
TAB #AY
HYP #A AY
TES
FLI AB
TAB #AY
THE Verbal aggression
TLA V
SLA S Sum of scores
SAV R first
DIS IE
GLL
RUN first.cmd
EXI
GLL
SHO S
N
ITE ABCDEFGHIJKLMNOPQRSTUVWX -
LLR AB AC AD BC BD CD EF GH IJ KL MN OP QR ST UV WX AY BY CY DY EY FY GY HY IY JY KY LY MY NY OY
GLL
SAV R first
N
SHO RC
CHD ../rasch30
OPE rasch30
Y
ITE *
CUT
CUT /4
SHO S
GLL
