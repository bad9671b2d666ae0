#include "Codebook.h"

#include "Answer.h"
#include "Browser.h"
#include "LocaleText.h"
#include "OutputFile.h"
#include "write/Codebook.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>

using vanlayout::CodebookIndexEntry;
using vanlayout::Layout;

namespace
{

const QLatin1String indexName("index.html");

int writePages(const CodebookOptions &options, const std::string &output)
{
    LayoutOutput call = options.output;
    call.output = output;
    call.ending = QStringLiteral(".html");
    call.index = indexName;
    vanlayout::CodebookOptions pageOptions;
    pageOptions.language = fromLocale(call.language);
    pageOptions.hasProblems = !options.hasNoProblems;

    QVector<CodebookIndexEntry> entries;
    LayoutForm form;
    form.write = [&](const Layout &layout, QIODevice &device) { writeCodebook(layout, device, pageOptions); };
    form.written = [&](const Layout &layout, const QString &name) { entries.append(indexEntryOf(layout, name)); };
    form.writeIndex = [&](const QString &path) {
        return writeAnswer(path, QString(),
                           [&](QIODevice &device) { writeCodebookIndex(entries, device, pageOptions); });
    };
    return writeLayouts(call, form);
}

QString pageToOpen(const QString &output)
{
    return QFileInfo(output).isDir() ? QDir(output).filePath(indexName) : output;
}

int noBrowser(const QString &subject)
{
    return noAnswerFor(subject, QStringLiteral("no browser could be started; set BROWSER to the command of one"));
}

// If a page could not be written, a page that an earlier call wrote is not opened instead.
int openWrittenPages(const CodebookOptions &options)
{
    const QString output = QFile::decodeName(options.output.output.c_str());
    const int status = writePages(options, options.output.output);
    if (status != statusFine)
        return status;
    return openInBrowser(pageToOpen(output)) ? statusFine : noBrowser(output);
}

// If there are several files, the pages of those that could be read are opened.
int openTemporaryPages(const CodebookOptions &options)
{
    QTemporaryDir directory(QDir::temp().filePath(QStringLiteral("vanlayout-XXXXXX")));
    if (!directory.isValid())
        return noAnswerFor(QDir::tempPath(), QStringLiteral("cannot be written: ") + directory.errorString());
    const bool isOnePage = options.output.files.size() == 1 && !options.output.walksDirectories;
    const QString output = isOnePage ? directory.filePath(QStringLiteral("codebook.html")) : directory.path();
    const int status = writePages(options, QFile::encodeName(output).toStdString());
    const QString page = pageToOpen(output);
    if (!QFileInfo::exists(page))
        return status;
    if (!openInBrowser(page))
        return noBrowser(QFile::decodeName(options.output.files.front().c_str()));
    directory.setAutoRemove(false);
    return status;
}

} // namespace

int writeCodebookPages(const CodebookOptions &options)
{
    if (!options.isOpened)
        return writePages(options, options.output.output);
    if (options.output.output == "-") {
        complain(QString(), QStringLiteral("--open needs a file or a directory, not standard output"));
        return statusNoAnswer;
    }
    return options.output.output.empty() ? openTemporaryPages(options) : openWrittenPages(options);
}
