
/* #at(k): the byte at which the k-th character of the line begins. It is k, but behind a wider character. */
VECTOR #at(<<columns>>).
STRING #byte (A1).
DO IF @wide EQ 1.
COMPUTE #next=1.
LOOP #k=1 TO <<columns>>.
COMPUTE #at(#k)=#next.
COMPUTE #byte=SUBSTR(@line,#next,1).
DO IF RANGE(#byte,X'01',X'7F').
COMPUTE #next=#next+1.
ELSE IF #byte LT SUBSTR(X'E18080',1,1).
COMPUTE #next=#next+2.
ELSE IF #byte LT SUBSTR(X'F0908080',1,1).
COMPUTE #next=#next+3.
ELSE.
COMPUTE #next=#next+4.
END IF.
END LOOP.
COMPUTE #plain=0.
ELSE IF #plain EQ 0.
LOOP #k=1 TO <<columns>>.
COMPUTE #at(#k)=#k.
END LOOP.
COMPUTE #plain=1.
END IF.
