
/* @record: the number of the record type; 0 for a line of no known type, -1 for a blank line. */
NUMERIC @record #unknown #blank #wide (F8).
STRING #message (A200).
<<recordType>>IF SUBSTR(@line,1,1) EQ '~' @record=0.
IF <<isBlank>> @record=-1.
DO IF @end EQ 1.
COMPUTE @record=-2.
<<counts>>END IF.
COMPUTE #unknown=#unknown+(@record EQ 0).
COMPUTE #blank=#blank+(@record EQ -1).
COMPUTE #wide=#wide+@wide.
SELECT IF @record GT 0 OR @end EQ 1.
DATASET NAME lines.
EXECUTE.
