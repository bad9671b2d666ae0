
/* The number of each record within its case, in the order of the file. */
SORT CASES BY <<ids>> @row.
MATCH FILES /FILE=* /BY <<ids>> /FIRST=@first.
IF @first EQ 1 #occ=0.
COMPUTE #occ=#occ+1.
COMPUTE occ=#occ.
SORT CASES BY @row.
