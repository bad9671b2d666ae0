    count if <<text>> != "" & <<name>> >= .
    if r(N) > 0 {
        noisily display as text "<<table>>.<<name>>: " %1.0f r(N) " values are no numbers"
    }
