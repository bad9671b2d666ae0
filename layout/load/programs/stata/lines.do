version 13
clear
args data
if `"`macval(data)'"' == "" {
<<path>>}

* The lines of the file, to count those that are in no table. The first may begin with a byte-order mark.
quietly {
    infix <<pieces>> using `"`macval(data)'"', clear
    scalar van_mark = 0
    scalar van_first = ""
    if _N > 0 {
        scalar van_mark = substr(_line1[1], 1, 3) == char(239) + char(187) + char(191)
        scalar van_first = substr(<<first>>, 4, .)
    }
    if scalar(van_mark) {
<<lost>><<marked>>    }
<<check>>    generate byte _blank = <<blank>>
    generate byte _known = <<known>>
<<types>>    replace _known = 0 if _start == "~"
    count if _blank
    if r(N) > 0 {
        noisily display as text %1.0f r(N) " blank lines"
    }
    count if !_known & !_blank
    if r(N) > 0 {
        noisily display as text %1.0f r(N) " lines of no known record type"
    }
}
