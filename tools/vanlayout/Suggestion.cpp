#include "Suggestion.h"

#include <algorithm>

namespace
{

constexpr size_t maxLength = 64; // a longer word is not treated as mistyped
constexpr size_t lettersForEachError = 3;

char small(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? char(letter - 'A' + 'a') : letter;
}

std::string inSmallLetters(std::string word)
{
    std::transform(word.begin(), word.end(), word.begin(), small);
    return word;
}

// The number of missing, added, replaced or swapped letters between two words.
size_t distanceBetween(const std::string &first, const std::string &second)
{
    const size_t width = second.size() + 1;
    std::vector<size_t> distances((first.size() + 1) * width);
    const auto at = [&](size_t i, size_t j) -> size_t & { return distances[i * width + j]; };
    for (size_t i = 0; i <= first.size(); ++i) {
        for (size_t j = 0; j <= second.size(); ++j) {
            if (i == 0 || j == 0) {
                at(i, j) = i + j;
                continue;
            }
            const size_t exchange = first[i - 1] == second[j - 1] ? 0 : 1;
            at(i, j) = std::min({ at(i - 1, j) + 1, at(i, j - 1) + 1, at(i - 1, j - 1) + exchange });
            if (i > 1 && j > 1 && first[i - 1] == second[j - 2] && first[i - 2] == second[j - 1])
                at(i, j) = std::min(at(i, j), at(i - 2, j - 2) + 1);
        }
    }
    return distances.back();
}

} // namespace

std::string nearestWord(const std::string &mistyped, const std::vector<std::string> &words)
{
    if (mistyped.size() > maxLength)
        return std::string();
    std::string nearest;
    const std::string typed = inSmallLetters(mistyped);
    size_t shortest = mistyped.size() / lettersForEachError + 1;
    for (const std::string &word : words) {
        const size_t distance = distanceBetween(typed, inSmallLetters(word));
        if (distance < shortest) {
            shortest = distance;
            nearest = word;
        }
    }
    return nearest;
}

std::string suggestionFor(const std::string &mistyped, const std::vector<std::string> &words)
{
    const std::string word = nearestWord(mistyped, words);
    return word.empty() ? std::string() : "; did you mean " + word + "?";
}
