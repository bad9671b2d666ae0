    * infix counts bytes: columns would be wrong on a line with wider characters.
    count if <<wide>>
    if r(N) > 0 {
        noisily display as error %1.0f r(N) " lines are not ASCII. Stata counts bytes in such lines. Make the data file one of windows-1252"
        noisily display as error "(unicode convertfile of Stata 14 does it), and this program with --encoding windows-1252."
        exit 459
    }
