
/* One case for each occurrence that is not blank. */
LOOP item_occ=1 TO <<occurrences>>.
<<field>>DO IF @end EQ 0 AND SUBSTR(<<source>>,#from,#size) NE ' '.
COMPUTE #rows=#rows+1.
<<fields>>XSAVE OUTFILE=<<file>>
  /KEEP=<<columns>>.
END IF.
END LOOP.
