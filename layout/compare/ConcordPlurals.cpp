#include "compare/ConcordPlurals_p.h"

#include <algorithm>
#include <iterator>

namespace vanlayout
{

namespace
{

struct Endings {
    const char *singular;
    const char *plural;
    int shortestStem; ///< letters before the ending
};

// English, French, Spanish, Portuguese.
constexpr Endings endings[] = {
    { "man", "men", 0 },     { "foot", "feet", 0 }, { "tooth", "teeth", 0 }, { "mouse", "mice", 0 },
    { "goose", "geese", 0 }, { "ox", "oxen", 0 },   { "f", "ves", 2 },       { "fe", "ves", 2 },
    { "al", "aux", 2 },      { "ail", "aux", 2 },   { "z", "ces", 2 },       { "s", "ses", 2 },
    { "ao", "oes", 2 },      { "ao", "aes", 1 },    { "al", "ais", 2 },      { "el", "eis", 2 },
    { "ol", "ois", 2 },      { "il", "is", 2 },     { "il", "eis", 2 },      { "m", "ns", 2 },
};

bool isPluralOf(const QString &plural, const QString &singular)
{
    return std::any_of(std::begin(endings), std::end(endings), [&](const Endings &pair) {
        const QLatin1String ofOne(pair.singular);
        const QLatin1String ofMany(pair.plural);
        if (!singular.endsWith(ofOne) || !plural.endsWith(ofMany))
            return false;
        const QString stem = singular.left(singular.size() - ofOne.size());
        return stem.size() >= pair.shortestStem && plural.size() == stem.size() + ofMany.size()
            && plural.startsWith(stem);
    });
}

} // namespace

bool areSingularAndPlural(const QString &one, const QString &other)
{
    return isPluralOf(one, other) || isPluralOf(other, one);
}

} // namespace vanlayout
