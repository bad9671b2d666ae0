#include "Show.h"

#include "Explain.h"
#include "Printable.h"
#include "Printer.h"
#include "cspro/DecimalQuestion.h"
#include "import/ReadReport.h"

#include <QFile>

#include <algorithm>
#include <iostream>
#include <new>

#ifdef Q_OS_UNIX
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace
{

constexpr size_t outputBufferSize = 1 << 16;

// The width of the terminal that standard output is; 0 where it is none.
int terminalWidth()
{
#ifdef Q_OS_UNIX
    winsize size = {};
    if (isatty(STDOUT_FILENO) && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
#endif
    return std::max(qEnvironmentVariableIntValue("COLUMNS"), 0);
}

std::unique_ptr<Printer> makePrinter(const ShowOptions &options)
{
    const bool severalFiles = options.files.size() > 1;
    if (options.format == "json")
        return makeJsonPrinter(stdout, severalFiles);
    if (options.format == "csv")
        return makeCsvPrinter(stdout, severalFiles);
    return makeTablePrinter(stdout, severalFiles, terminalWidth());
}

// One line that a person can follow; the name stands once, so that a long one does not hide the counts.
void tellOfNotes(const QString &file, const ReadReport &report)
{
    if (!report.isEmpty())
        complain(file, QStringLiteral("%1; vanlayout explain shows them").arg(countsOf(report)));
}

int showFile(const QString &file, const FileType *type, Printer &printer)
{
    const QString subject = file.isEmpty() ? QStringLiteral("''") : file;
    try {
        ReadReport report;
        const Layout layout = readLayout(file, type, &report);
        if (layout.problem.isEmpty()) {
            printer.printLayout(layout);
            tellOfNotes(subject, report);
            return statusFine;
        }
        printer.printProblem(layout);
        complain(subject, layout.problem);
    } catch (const std::bad_alloc &) {
        complain(subject, QStringLiteral("not enough memory"));
    }
    return statusNoAnswer;
}

} // namespace

void answerDecimalQuestions(const std::string &decimals)
{
    if (decimals == "ask")
        return;
    const int button = decimals == "yes" ? QMessageBox::YesToAll : QMessageBox::NoToAll;
    setDecimalAnswer([button](const DecimalQuestion & /*question*/) { return button; });
}

void complain(const QString &subject, const QString &problem)
{
    const QString line = subject.isEmpty() ? problem : subject + QLatin1String(": ") + problem;
    std::fprintf(stderr, "vanlayout: %s\n", printable(line).toLocal8Bit().constData());
}

int statusAfterOutput(int status)
{
    std::cout.flush();
    if (std::fflush(stdout) == 0 && !std::ferror(stdout) && std::cout)
        return status;
    complain(QStringLiteral("standard output"), QStringLiteral("cannot be written"));
    return statusNoAnswer;
}

int show(const ShowOptions &options)
{
    std::setvbuf(stdout, nullptr, _IOFBF, outputBufferSize);
    answerDecimalQuestions(options.decimals);
    const FileType *type = fileTypeNamed(options.type);
    const auto printer = makePrinter(options);
    int status = statusFine;
    for (const std::string &file : options.files)
        status = std::max(status, showFile(QFile::decodeName(file.c_str()), type, *printer));
    return statusAfterOutput(status);
}
