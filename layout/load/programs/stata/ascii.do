    * infix counts bytes: columns would be wrong on a line with wider characters.
    generate long _wide = _n if <<wide>>
    count if _wide < .
    if r(N) > 0 {
        sort _wide
        noisily display as error %1.0f r(N) " lines are not ASCII; the first is line " %1.0f _wide[1] ". Stata counts bytes in such lines."
        noisily display as error "Make the data file one of windows-1252 (unicode convertfile of Stata 14 does it),"
        noisily display as error "and this program with --encoding windows-1252."
        exit 459
    }
    drop _wide
