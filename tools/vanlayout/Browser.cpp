#include "Browser.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStringList>
#include <QUrl>

#include <algorithm>

namespace
{

QStringList desktopCommands()
{
#if defined(Q_OS_WIN)
    return { QStringLiteral("rundll32 url.dll,FileProtocolHandler") };
#elif defined(Q_OS_MACOS)
    return { QStringLiteral("open") };
#else
    return { QStringLiteral("xdg-open") };
#endif
}

QStringList browserCommands()
{
    const QStringList named = qEnvironmentVariable("BROWSER").split(QDir::listSeparator(), Qt::SkipEmptyParts);
    return named.isEmpty() ? desktopCommands() : named;
}

bool start(const QString &command, const QString &address)
{
    QStringList words = QProcess::splitCommand(command);
    if (words.isEmpty())
        return false;
    const bool hasPlace = std::any_of(words.cbegin(), words.cend(),
                                      [](const QString &word) { return word.contains(QLatin1String("%s")); });
    words.replaceInStrings(QStringLiteral("%s"), address);
    if (!hasPlace)
        words.append(address);
    QProcess browser;
    browser.setProgram(words.takeFirst());
    browser.setArguments(words);
    browser.setStandardOutputFile(QProcess::nullDevice());
    browser.setStandardErrorFile(QProcess::nullDevice());
    return browser.startDetached();
}

} // namespace

bool openInBrowser(const QString &path)
{
    const QString address = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()).toString(QUrl::FullyEncoded);
    const QStringList commands = browserCommands();
    return std::any_of(commands.cbegin(), commands.cend(),
                       [&](const QString &command) { return start(command, address); });
}
