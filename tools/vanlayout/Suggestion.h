#ifndef VANLAYOUT_SUGGESTION_H
#define VANLAYOUT_SUGGESTION_H

#include <string>
#include <vector>

/// The word that a mistyped one was probably meant to be: the nearest of \a words, by letters that were left out,
/// added, exchanged or swapped with their neighbour. Empty where none is near: a third of the letters at most may
/// differ. Capital and small letters do not differ.
std::string nearestWord(const std::string &mistyped, const std::vector<std::string> &words);

/// "; did you mean WORD?" for the nearest word; empty where there is none.
std::string suggestionFor(const std::string &mistyped, const std::vector<std::string> &words);

#endif
