        * infix may take blanks off, so that the first line cannot be put together of its parts.
        if <<lost>> {
            noisily display as error "The first line begins with a byte-order mark, and is longer than 2,045 bytes. Remove the mark."
            exit 459
        }
