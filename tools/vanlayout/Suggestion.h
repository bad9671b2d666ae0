#ifndef VANLAYOUT_SUGGESTION_H
#define VANLAYOUT_SUGGESTION_H

#include <string>
#include <vector>

/// The word that was probably meant by a mistyped one: the most similar of \a words, by letters that are missing,
/// added, replaced or swapped with their neighbour. Empty if none is similar: at most a third of the letters may
/// differ. Case is ignored.
std::string nearestWord(const std::string &mistyped, const std::vector<std::string> &words);

/// "; did you mean WORD?" for the most similar word; empty if there is none.
std::string suggestionFor(const std::string &mistyped, const std::vector<std::string> &words);

#endif
