# The checks of a lookup file in awk: length of the key, duplicates, and a count of 1 for each value of a
# new key. The benchmark compares the tool with it.
#   awk -f lookup.awk FILE
{
    position = index($0, " ")
    if (position > 1) {
        key = substr($0, 1, position - 1)
        value = substr($0, position + 1)
        sub(/^[ \t]*/, "", value)
    } else {
        print NR "_Separator [ ] does not exist"
    }
    if (size == 0)
        size = length(key)
    else if (length(key) != size)
        print NR "_Key [" key "] has a different key size [" length(key) "] from the first record [" size "]"
    if (key in entries) {
        print NR "_Key [" key "] already exists"
    } else {
        entries[key] = value
        if (!(key in frequencies))
            frequencies[value] = 1
    }
}
END {
    for (value in frequencies)
        print value, frequencies[value]
}
