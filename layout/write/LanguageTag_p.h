#ifndef LAYOUT_WRITE_LANGUAGETAG_P_H
#define LAYOUT_WRITE_LANGUAGETAG_P_H

#include "util/KeyedHash_p.h"

#include <QString>

namespace vanlayout
{

/// The language tag (BCP 47) of a language of a dictionary, in lower case, with `-` for `_`; empty for a code that is
/// not a language tag.
///
/// The tag of a language is its two-letter code (ISO 639-1) if it has one, so `ENG` and `EN` are `en`, `FRE` and `FRA`
/// are `fr`. Other two-letter codes and words such as `ENGLISH` are not tags; other three-letter codes are kept.
/// Script, region and variants are only checked for their syntax.
QString languageTagOf(const QString &language);

/// A cache of the tags of the languages of a layout.
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
