#ifndef LAYOUT_WRITE_LANGUAGETAG_P_H
#define LAYOUT_WRITE_LANGUAGETAG_P_H

#include "util/KeyedHash_p.h"

#include <QString>

namespace vanlayout
{

/// The language tag (BCP 47) of a language of a dictionary, in small letters, with `-` for `_`; empty for a code that
/// is none.
///
/// The tag of a language is its code of two letters (ISO 639-1) where it has one, so `ENG` and `EN` are `en`, `FRE` and
/// `FRA` are `fr`. Other codes of two letters are none, nor are words such as `ENGLISH`; other codes of three letters
/// are taken as they are. Script, region and variants are checked for their form alone.
QString languageTagOf(const QString &language);

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
