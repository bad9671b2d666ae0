#include "write/LabelLanguages_p.h"

namespace vanlayout
{

LabelLanguages::LabelLanguages(const QVector<Language> &declared)
{
    for (const Language &language : declared) {
        if (numbers.emplace(Key(language.name.toLower(), 0), languages.size()).second)
            languages.append(language);
    }
}

QVector<int> LabelLanguages::numbersOf(const Labels &labels)
{
    std::map<QString, int> before; // number of texts of this label so far, by language
    QVector<int> found;
    found.reserve(labels.parts.size());
    for (const Label &part : labels.parts)
        found.append(numberOf(part.language, before[part.language.toLower()]++));
    return found;
}

int LabelLanguages::numberOf(const QString &code, int time)
{
    const auto [known, isNew] = numbers.emplace(Key(code.toLower(), time), languages.size());
    if (isNew)
        languages.append({ code, QString() });
    return known->second;
}

int LabelLanguages::find(const QString &code) const
{
    const auto known = numbers.find(Key(code.toLower(), 0));
    return known == numbers.end() || code.isEmpty() ? 0 : known->second;
}

} // namespace vanlayout
