#include "Answer.h"
#include "CommandLine.h"
#include "Printable.h"

#include <QTextCodec>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <string>

#ifdef Q_OS_UNIX
#include <langinfo.h>
#endif

namespace
{

constexpr int mibAscii = 3;

bool isVerbose = false;

// Lines of the library and of Qt are printed on standard error only with --verbose; a fatal one becomes one line and an
// exit status.
void handleMessage(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
{
    if (type == QtFatalMsg) {
        complain(QString(), message.section(QLatin1Char('\n'), 0, 0));
        std::_Exit(statusNoAnswer);
    }
    if (!isVerbose)
        return;
    // Some lines of the library consist only of line feeds.
    const bool isSpace
        = std::all_of(message.begin(), message.end(), [](QChar unit) { return unit == QLatin1Char('\n'); });
    printToStandardError(isSpace ? QString() : message);
}

// Qt may have been built to use UTF-8 in every locale.
QTextCodec *codecOfLocale()
{
#ifdef Q_OS_UNIX
    return QTextCodec::codecForName(nl_langinfo(CODESET));
#else
    return QTextCodec::codecForLocale();
#endif
}

void useLocale()
{
    std::setlocale(LC_ALL, "");
    QTextCodec *codec = codecOfLocale();
    if (!codec || codec->mibEnum() == mibAscii || std::setlocale(LC_CTYPE, nullptr) == std::string("C"))
        codec = QTextCodec::codecForName("UTF-8");
    QTextCodec::setCodecForLocale(codec);
    std::setlocale(LC_NUMERIC, "C");
}

} // namespace

int main(int argc, char **argv)
{
    qInstallMessageHandler(handleMessage);
    useLocale();
    return runCommandLine(argc, argv, isVerbose);
}
