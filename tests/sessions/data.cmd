! The data of a survey with missing values, cut points and a condition; would catch a case lost.
OPE survey/survey
SHO D
SEL
FRE PE
MIS *
DAT PH
5 8:1
SYS PEK
4
INP DT
SHO DE
MAK
Y
FRE Q
