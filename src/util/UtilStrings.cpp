#include "util/UtilStrings.h"

#include "util/EmptyText_p.h"
#include "util/UtilFiles.h"

#include <QDir>
#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QLabel>

#include <algorithm>

namespace
{

constexpr int labelFontSize = 10; // points

// Stored forms of a line break and a tab.
struct StoredForm {
    QLatin1String stored;
    QLatin1String restored;
};
const StoredForm storedForms[]
    = { { QLatin1String("#\\#n"), QLatin1String("\r\n") }, { QLatin1String("#\\#t"), QLatin1String("\t") } };

// Returns the form at the position, or null.
const StoredForm *formAt(const QString &text, int place)
{
    const auto *found = std::find_if(std::begin(storedForms), std::end(storedForms), [&](const StoredForm &form) {
        return QStringView(text).mid(place).startsWith(form.stored);
    });
    return found != std::end(storedForms) ? found : nullptr;
}

// Returns the index of the separator at or after a position, or one more than the size of the line if there is none.
int endOfWord(const QString &line, int position, const QString &separator)
{
    const int notFound = line.size() + 1;
    if (position > line.size())
        return notFound;
    // Outside the line the text of one character is empty, and the separator may be empty too.
    if (separator.isEmpty())
        return position < 0 ? position : line.size();
    if (separator.size() > 1)
        return notFound;
    const int found = line.indexOf(separator, std::max(position, 0));
    return found >= 0 ? found : notFound;
}

} // namespace

UtilStrings &UtilStrings::operator=(const UtilStrings & /*other*/) = default;
UtilStrings &UtilStrings::operator=(UtilStrings && /*other*/) = default;

QString UtilStrings::GetWordSeparator(QString line, int &position, QString separator, QString qualifier)
{
    const int start = std::max(position, 0);
    const int end = endOfWord(line, position, separator);
    QString word = end > start ? notNull(line.mid(start, end - start)) : emptyText();
    // A separator at the end of the line ends it, although `end` is below the size. A separator before the line is not
    // in it.
    const bool standsLast = end >= 0 && end == line.size() - 1;
    position = end < line.size() && !standsLast ? end + 1 : -1;
    if (word.size() > 1 && !qualifier.isEmpty() && QStringView(word).mid(1, 1) == qualifier)
        return word.mid(2);
    return word;
}

QString UtilStrings::returnLineBreak(QString text)
{
    if (text.isEmpty())
        return emptyText();
    QString restored;
    restored.reserve(text.size());
    for (int place = 0; place < text.size();) {
        if (const StoredForm *form = formAt(text, place)) {
            restored += form->restored;
            place += form->stored.size();
        } else {
            restored += text.at(place++);
        }
    }
    return restored;
}

QString UtilStrings::getBetterPathString(QString path, int width, int fontSize)
{
    if (path.isEmpty() || !qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return path;
    const QLatin1Char separator('\\');
    const QFontMetrics metrics(QFont(QStringLiteral("Arial"), fontSize));
    const QStringList parts = path.split(separator);
    const int last = parts.size() - 1;
    // Length of the parts before `keep`, each with its separator.
    int headSize = path.size() - parts.last().size();
    QString candidate;
    for (int keep = last; keep >= 0; --keep) { // LCOV_EXCL_BR_LINE: the shortest form ends the loop from within
        candidate = path.left(headSize);
        if (keep != last)
            candidate += QLatin1String("...\\");
        candidate += parts.last();
        const qint64 measured = qint64(metrics.horizontalAdvance(candidate)) * 11 / 10;
        if (measured < width || keep == 0)
            break;
        headSize -= parts.at(keep - 1).size() + 1;
    }
    return candidate;
}

QString UtilStrings::setBetterPathInQDockWidget(QString path, int width, QLabel *label)
{
    QString repaired = UtilFiles::getDataBaseEntityFilePath(std::move(path));
    if (label) {
        const QString nativePath = QDir::toNativeSeparators(repaired);
        label->setText(getBetterPathString(nativePath, width, labelFontSize));
        label->setToolTip(nativePath);
    }
    return repaired;
}
