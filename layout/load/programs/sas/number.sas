
<<p>>parse:
  /* A number: blanks around it do not count, and a written mark is a point or a comma. */
  <<p>>value = .;
  <<p>>wrong = 0;
  <<p>>text = left(<<p>>text);
  if <<p>>text = ' ' then return;
  if prxmatch('/^[+-]?[0-9]+ *$/', <<p>>text) then <<p>>value = input(<<p>>text, 32.) / 10 ** <<p>>decimals;
  else if <<p>>decimals > 0 and prxmatch('/^[+-]?([0-9]+[.,][0-9]*|[.,][0-9]+) *$/', <<p>>text) then do;
    <<p>>decimals = lengthn(<<p>>text) - indexc(<<p>>text, '.,');
    <<p>>value = input(compress(<<p>>text, '.,'), 32.) / 10 ** <<p>>decimals;
  end;
  else <<p>>wrong = 1;
return;
