// Nothing: what the compiler defines of itself is asked for with it.
