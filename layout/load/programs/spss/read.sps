/* TABWIDTH is for PSPP: a tab is one blank. SPSS does not know it: delete the line there. */
FILE HANDLE data /NAME=<<path>>
  /ENCODING='<<encoding>>'
  /LRECL=<<recordLength>>
  /TABWIDTH=1
  .

/* This is for PSPP as well: all texts are UTF-8. SPSS is in Unicode mode by default; delete the line there. */
SET LOCALE='UTF-8'.

/* A count is one line of the listing. */
SET WIDTH=255.

/* Each line of the data file is one case, and @end is 1 in one more case at the end, which prints the counts. */
INPUT PROGRAM.
DATA LIST FILE=data FIXED NOTABLE END=#end /<<lines>>.
NUMERIC @end (F1).
COMPUTE @end=#end.
DO IF #end EQ 1.
END CASE.
END FILE.
ELSE.
END CASE.
END IF.
END INPUT PROGRAM.

/* A byte-order mark is no part of the first line. */
DO IF $CASENUM EQ 1.
COMPUTE #mark=0.
IF SUBSTR(@line,1,<<markLength>>) EQ <<mark>> #mark=1.
DO REPEAT @piece=<<pieces>>.
IF #mark EQ 1 @piece=SUBSTR(@piece,<<afterMark>>).
END REPEAT.
END IF.

/* @wide: whether a line has other characters than printable ASCII. */
NUMERIC @wide (F1).
COMPUTE @wide=0.
DO REPEAT @piece=<<pieces>>.
LOOP #i=1 TO LENGTH(RTRIM(@piece)).
IF NOT RANGE(SUBSTR(@piece,#i,1),' ','~') @wide=1.
END LOOP IF @wide EQ 1.
END REPEAT.
