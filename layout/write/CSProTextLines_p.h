#ifndef LAYOUT_WRITE_CSPROTEXTLINES_P_H
#define LAYOUT_WRITE_CSPROTEXTLINES_P_H

#include "model/Layout.h"
#include "util/KeyedHash_p.h"
#include "write/Loss.h"

#include <QByteArray>
#include <QString>

namespace vanlayout
{

/// The spelling of texts in the lines of a CSPro dictionary in text form. Each operation reports what a line cannot
/// hold.
class CSProTextSpelling
{
public:
    /// \a lossList may be null. A dictionary without languages is in the language EN.
    CSProTextSpelling(const QVector<Language> &languageList, Losses *lossList);

    void lose(const QString &path, const QString &what) const;
    /// A text without line breaks and without white space at both ends.
    QString text(const QString &value, const QString &path, const QString &what) const;
    /// The code of a language, which is a key: without `=`, and not begun like a section or a comment.
    QString languageCode(const QString &name) const;
    /// The text that marks a record, in quotation marks.
    QString recordType(const QString &value, const QString &path) const;
    /// All texts of a label in the order of the languages, with `|` between them.
    QString label(const Labels &labels, const QString &path) const;
    /// The same for a label that follows codes on its line, which may begin with blanks.
    QString valueLabel(const Labels &labels, const QString &path) const;
    /// The lines of a note, without `Note=`: `\r\n`, as four characters, at the end of each line but the last, long
    /// lines divided at a blank, and `~` for a blank at the beginning.
    QStringList note(const QString &text, const QString &path) const;
    /// The codes of a value, separated by blanks.
    QString codes(const Value &value, const Item &item, const QString &path) const;

private:
    QString joined(const Labels &labels, const QString &path) const;
    QStringList inOrder(const Labels &labels, const QString &path) const;
    int placeOf(const Label &part, int index) const;
    QString part(QString value, const QString &path) const;
    QString code(const QString &value, const Item &item) const;
    bool isWritable(const Range &range, const Item &item, const QString &path) const;

    QVector<Language> languages;
    KeyedMap<QString, int> places; // of the languages, by their codes in capitals
    Losses *losses;
};

} // namespace vanlayout

#endif
