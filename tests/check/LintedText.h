#ifndef CHECK_LINTEDTEXT_H
#define CHECK_LINTEDTEXT_H

#include "check/Lint.h"
#include "read/Reader.h"

#include <QBuffer>
#include <QByteArray>
#include <QFile>
#include <QStringList>
#include <QVector>

/// Short functions that check a dictionary which a test holds as text.
namespace linted
{

using namespace vanlayout;

/// The findings of a file, of one rule if \a only is given.
inline QVector<LintFinding> findingsOf(QByteArray content, const QVector<LintRule> &only = {})
{
    ElementLines lines;
    ReadOptions reading;
    reading.lines = &lines;
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    const Layout layout = readLayout(buffer, QStringLiteral("survey.dcf"), reading);
    LintOptions options;
    options.only = only;
    options.lines = &lines;
    return lint(layout, options);
}

/// A finding as the documentation shows it.
inline QString shown(const LintFinding &finding)
{
    QString text = wordOf(finding.severity()) + QLatin1String(" [") + infoOf(finding.rule).id + QLatin1Char(']');
    if (finding.line > 0)
        text += QStringLiteral(" line %1").arg(finding.line);
    if (!finding.path.isEmpty())
        text += QLatin1Char(' ') + finding.path;
    return text + QLatin1String("\n  ") + finding.message;
}

/// The page of the rules.
inline QString page()
{
    QFile file(QStringLiteral(VAN_EXAMPLES "/../docs/lint.md"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The text of the first block of this kind in a section of the page.
inline QString blockOf(const QString &section, const QString &kind)
{
    const QString begin = QLatin1String("```") + kind + QLatin1Char('\n');
    const int start = section.indexOf(begin);
    const int end = section.indexOf(QLatin1String("\n```"), start + begin.size() - 1);
    return start < 0 || end < 0 ? QString() : section.mid(start + begin.size(), end - start - begin.size());
}

/// The dictionary that the examples of the page change.
inline QString baseDictionary()
{
    return blockOf(page(), QStringLiteral("dictionary")) + QLatin1Char('\n');
}

/// A text after a change in the form of the page: lines with a blank are context, those with - are removed, those with
/// + are added, and @@ separates two places. Empty if a place is not found exactly once.
inline QString changed(QString text, const QString &change)
{
    const QStringList places = change.split(QStringLiteral("\n@@\n"));
    for (const QString &place : places) {
        QString before;
        QString after;
        const QStringList lines = place.split(QLatin1Char('\n'));
        for (const QString &line : lines) {
            if (!line.startsWith(QLatin1Char('+')))
                before += line.mid(1) + QLatin1Char('\n');
            if (!line.startsWith(QLatin1Char('-')))
                after += line.mid(1) + QLatin1Char('\n');
        }
        if (text.count(before) != 1)
            return QString();
        text.replace(before, after);
    }
    return text;
}

} // namespace linted

#endif
