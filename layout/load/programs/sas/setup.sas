/* The path of the data file, and the directory in which the tables are saved; empty: the library WORK. */
%let data = <<data>>;
%let out = ;

data _null_;
  length path $ 2000;
  path = symget('data');
<<default>>  if filename('vanraw', path) ne 0 or not fexist('vanraw') then do;
    put 'ERROR: The data file cannot be opened: ' path;
    abort cancel;
  end;
  path = symget('out');
  if path = ' ' then path = pathname('work');
  if libname('vanout', path) ne 0 then do;
    put 'ERROR: The directory of the tables cannot be used: ' path;
    abort cancel;
  end;
run;
