# Stata and SPSS files.
