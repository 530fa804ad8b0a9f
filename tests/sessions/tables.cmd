! Tables by labels, numbers and wildcards, printed in every form; would catch a wrong margin or box.
OPE survey/survey
TAB s e
HYP **
TES
TES RCJE
TAB K C S
HYP KC
TES TM
TES Z
SHO T
TAB 1 2 9
TAB XQ
TAB #P
TAB *
TAB P
OPE verbal/verbal
Y
TAB AB
HYP **
TES E
OPE rasch30/rasch30
Y
TAB *
TAB Aa
SHO T
DIS T
SHO T
