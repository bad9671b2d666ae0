#ifndef LAYOUT_WRITE_LANGUAGETAG_P_H
#define LAYOUT_WRITE_LANGUAGETAG_P_H

#include <QRegularExpression>
#include <QString>

namespace vanlayout
{

/// The language tag (BCP 47) of a language of a dictionary, in small letters, with `-` for `_`; empty for a code that
/// is none.
inline QString languageTagOf(const QString &language)
{
    static const QRegularExpression form(QStringLiteral("\\A[a-z]{2,8}(-[a-z0-9]{1,8})*\\z"));
    QString tag = language.trimmed().toLower();
    tag.replace(QLatin1Char('_'), QLatin1Char('-'));
    return form.match(tag).hasMatch() ? tag : QString();
}

} // namespace vanlayout

#endif
