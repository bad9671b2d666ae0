// Empty on purpose: the predefined macros of the compiler are listed by preprocessing this file.
