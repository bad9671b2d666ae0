
/* The number of each record within its case, in the order of the file. */
proc sort data=<<table>>;
  by <<keys>><<p>>number;
run;
data <<table>>;
  set <<table>>;
<<by>>  <<p>>occ + 1;
  occ = <<p>>occ;
  drop <<p>>occ;
run;
proc sort data=<<table>>;
  by <<p>>number;
run;
