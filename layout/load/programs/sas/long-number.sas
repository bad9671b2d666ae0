
<<p>>parse:
  /* A number: blanks around it do not count, and a written mark is a point or a comma. */
  <<p>>value = .;
  <<p>>wrong = 0;
  <<p>>text = left(<<p>>text);
  if <<p>>text = ' ' then return;
  if prxmatch('/^[+-]?[0-9]+ *$/', <<p>>text) = 0 then do;
    if <<p>>decimals = 0 or prxmatch('/^[+-]?([0-9]+[.,][0-9]*|[.,][0-9]+) *$/', <<p>>text) = 0 then do;
      <<p>>wrong = 1;
      return;
    end;
    <<p>>decimals = lengthn(<<p>>text) - indexc(<<p>>text, '.,');
  end;
  /* An informat reads 32 digits; zeros take the place of those after them. */
  <<p>>sign = 1;
  if substr(<<p>>text, 1, 1) = '-' then <<p>>sign = -1;
  <<p>>text = compress(<<p>>text, '+-.,');
  if verify(<<p>>text, '0 ') > 0 then <<p>>text = substr(<<p>>text, verify(<<p>>text, '0 '));
  if lengthn(<<p>>text) <= 32 then <<p>>value = <<p>>sign * input(<<p>>text, 32.) / 10 ** <<p>>decimals;
  else <<p>>value = <<p>>sign * input(substr(<<p>>text, 1, 32), 32.) * 10 ** (lengthn(<<p>>text) - 32 - <<p>>decimals);
return;
