#ifndef LAYOUT_WRITE_LANGUAGETAG_P_H
#define LAYOUT_WRITE_LANGUAGETAG_P_H

#include "util/KeyedHash_p.h"

#include <QRegularExpression>
#include <QString>

namespace vanlayout
{

/// The language tag (BCP 47) of a language of a dictionary, in small letters, with `-` for `_`; empty for a code that
/// is none. A language has two or three letters: longer ones are in no registry, so a word such as `ENGLISH` is none.
inline QString languageTagOf(const QString &language)
{
    static const QRegularExpression form(
        QStringLiteral("\\A[a-z]{2,3}(-[a-z]{3})?(-[a-z]{4})?(-([a-z]{2}|[0-9]{3}))?"
                       "(-([a-z0-9]{5,8}|[0-9][a-z0-9]{3}))*(-x(-[a-z0-9]{1,8})+)?\\z"));
    QString tag = language.trimmed().toLower();
    tag.replace(QLatin1Char('_'), QLatin1Char('-'));
    return form.match(tag).hasMatch() ? tag : QString();
}

/// The tags of the languages of a layout, each found once.
class LanguageTags
{
public:
    QString of(const QString &language)
    {
        if (language.isEmpty())
            return language;
        const auto tag = tags.find(language);
        return tag != tags.end() ? tag->second : tags.emplace(language, languageTagOf(language)).first->second;
    }

private:
    KeyedMap<QString, QString> tags;
};

} // namespace vanlayout

#endif
