
/* The data file is read as ISO 8859-1. These are the characters that windows-1252 has at other places. */
DO IF @wide EQ 1.
DO REPEAT @from=X'C280' X'C282' X'C283' X'C284' X'C285' X'C286' X'C287' X'C288' X'C289' X'C28A' X'C28B' X'C28C' X'C28E'
    X'C291' X'C292' X'C293' X'C294' X'C295' X'C296' X'C297' X'C298' X'C299' X'C29A' X'C29B' X'C29C' X'C29E' X'C29F'
  /@to='€' '‚' 'ƒ' '„' '…' '†' '‡' 'ˆ' '‰' 'Š' '‹' 'Œ' 'Ž'
    '‘' '’' '“' '”' '•' '–' '—' '˜' '™' 'š' '›' 'œ' 'ž' 'Ÿ'.
COMPUTE @line=REPLACE(@line,@from,@to).
END REPEAT.
END IF.
