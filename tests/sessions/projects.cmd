! Projects opened one after the other; would catch one that leaves something to the next.
SHO V
OUT
BAT titanic/gone
BAT titanic/titanic none.cmd
BAT titanic/titanic first_session.cmd
BAT ../survey/survey ../first_session.cmd
BAT none
OPE ../verbal/verbal
N
OPE gone
Y
N
SHO C
REO
INP VG
VAR
CAT
ERA
OUT empty.rep
LOC
APP kept.rep
APP kept.rep
REA kept.rep
REA none.rep
RUN
RUN none.cmd
CMD none.cmd
CHD nowhere
CHD ..
S69 vision/none
Y
S69 vision/vision
Y
SHO VE
QVM
SHO P
0
OPE ../verbal/verbal
Y
EXI
