COMPUTE @item=$SYSMIS.
COMPUTE #size=LENGTH(RTRIM(#text)).
DO IF #size GT 0 AND @end EQ 0.
COMPUTE #mark=0.
COMPUTE #digits=0.
COMPUTE #wrong=0.
LOOP #i=1 TO #size.
COMPUTE #digit=SUBSTR(#text,#i,1).
DO IF RANGE(#digit,'0','9').
COMPUTE #digits=#digits+1.
ELSE IF ANY(#digit,'.',',') AND #mark EQ 0 AND @decimals GT 0.
COMPUTE #mark=#i.
ELSE IF #i GT 1 OR NOT ANY(#digit,'-','+').
COMPUTE #wrong=1.
END IF.
END LOOP IF #wrong EQ 1.
DO IF #wrong EQ 1 OR #digits EQ 0.
COMPUTE @wrong=@wrong+1.
ELSE.
COMPUTE #power=@decimals.
IF #mark GT 0 #power=#size-#mark.
IF #mark GT 0 #text=REPLACE(REPLACE(#text,'.',''),',','').
COMPUTE @item=NUMBER(#text,F40)/10**#power.
END IF.
END IF.
END REPEAT.
