#include "LintSettings.h"

#include "LocaleText.h"
#include "Suggestion.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace vanlayout;

namespace
{

constexpr qint64 maxSettingsSize = 1 << 20;

/// Reads the lines of one settings file into a selection.
class SettingsLines
{
public:
    explicit SettingsLines(LintSelection &target)
        : selection(target)
    {
    }

    void read(QByteArray text)
    {
        const QByteArray mark = QByteArrayLiteral("\xEF\xBB\xBF");
        if (text.startsWith(mark))
            text.remove(0, mark.size());
        const QList<QByteArray> lines = text.split('\n');
        for (const QByteArray &line : lines) {
            ++number;
            readLine(QString::fromUtf8(line.constData(), line.size())
                         .section(QLatin1Char('#'), 0, 0)
                         .replace(QLatin1Char(','), QLatin1Char(' ')));
            if (!selection.problem.isEmpty())
                return;
        }
    }

private:
    void readLine(const QString &line)
    {
        QStringList words = line.simplified().split(QLatin1Char(' '));
        const QString word = words.takeFirst();
        if (word.isEmpty() && words.isEmpty())
            return;
        if (word != QLatin1String("disable") && word != QLatin1String("only"))
            return refuse(QStringLiteral("the word \"%1\" is unknown; write disable ID or only ID").arg(word));
        if (words.isEmpty())
            return refuse(QStringLiteral("there is no rule after %1; write the id of a rule").arg(word));
        for (const QString &id : qAsConst(words)) {
            const std::optional<LintRule> rule = lintRuleOf(id);
            if (!rule)
                return refuse(QStringLiteral("the rule \"%1\" is unknown%2")
                                  .arg(id, QString::fromStdString(suggestionFor(id.toStdString(), lintRuleIds()))));
            (word == QLatin1String("only") ? selection.only : selection.disabled).append(*rule);
        }
    }
    void refuse(const QString &problem) { selection.problem = QStringLiteral("line %1: %2").arg(number).arg(problem); }

    LintSelection &selection;
    int number = 0;
};

} // namespace

LintSelection LintSettings::forFile(const QString &file)
{
    const QString directory
        = file == QLatin1String("-") ? QDir::currentPath() : QFileInfo(QFileInfo(file).absoluteFilePath()).path();
    const auto known = qAsConst(byDirectory).find(directory);
    if (known != qAsConst(byDirectory).end())
        return *known;
    const QString path = pathFor(directory);
    LintSelection selection = path.isEmpty() ? LintSelection() : readFrom(path);
    byDirectory.insert(directory, selection);
    return selection;
}

QString LintSettings::pathFor(const QString &directory)
{
    QString each = QDir::cleanPath(directory);
    for (;;) {
        QString path = QDir(each).filePath(QStringLiteral(".vanlayout-lint"));
        if (QFileInfo::exists(path))
            return path;
        const QString parent = QFileInfo(each).path();
        if (QFileInfo::exists(QDir(each).filePath(QStringLiteral(".git"))) || parent == each)
            return QString();
        each = parent;
    }
}

LintSelection LintSettings::readFrom(const QString &path)
{
    LintSelection selection;
    selection.file = path;
    QFile file(path);
    if (!QFileInfo(path).isFile())
        selection.problem = QStringLiteral("is not a file");
    else if (!file.open(QIODevice::ReadOnly))
        selection.problem = QStringLiteral("cannot be opened: %1").arg(file.errorString());
    else if (file.size() > maxSettingsSize)
        selection.problem = QStringLiteral("is larger than 1 MiB, which is the limit");
    else
        SettingsLines(selection).read(file.readAll());
    return selection;
}

QVector<LintRule> rulesOf(const std::vector<std::string> &ids)
{
    QVector<LintRule> rules;
    for (const std::string &id : ids) {
        if (const std::optional<LintRule> rule = lintRuleOf(fromLocale(id)))
            rules.append(*rule);
    }
    return rules;
}

std::vector<std::string> lintRuleIds()
{
    std::vector<std::string> ids;
    for (const LintRuleInfo &info : lintRules())
        ids.push_back(info.id.toStdString());
    return ids;
}
