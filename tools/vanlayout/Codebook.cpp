#include "Codebook.h"

#include "CodebookData.h"
#include "Json.h"
#include "Printable.h"
#include "Show.h"
#include "import/SourceField.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cstdio>
#include <memory>
#include <new>

namespace
{

QByteArray resource(const QString &name)
{
    QFile file(QLatin1String(":/codebook/") + name);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

// A text of the file in HTML, in an element or in quotes.
QByteArray html(QString text)
{
    if (hasLoneSurrogate(text)) {
        for (QChar &unit : text) {
            if (unit.isSurrogate())
                unit = QChar::ReplacementCharacter;
        }
    }
    return printable(text).toHtmlEscaped().toUtf8();
}

// What a policy names the content of an element by.
QByteArray hashSource(const QByteArray &content)
{
    return "'sha256-" + QCryptographicHash::hash(content, QCryptographicHash::Sha256).toBase64() + '\'';
}

QByteArray countItem(int count, const char *one, const char *several)
{
    return "<li><b>" + QByteArray::number(count) + "</b> " + (count == 1 ? one : several) + "</li>\n";
}

QByteArray gravityItem(int count, const QByteArray &gravity)
{
    return "<li><a href=\"#" + gravity + "\"><b>" + QByteArray::number(count) + "</b> " + gravity + "</a></li>\n";
}

/// Writes the page: its template with what stands in place of each name in double braces.
class PageWriter
{
public:
    PageWriter(QIODevice &target, const Layout &readLayout, const ReadReport &readReport)
        : device(target)
        , layout(readLayout)
        , report(readReport)
        , style(resource(QStringLiteral("page.css")))
        , script(resource(QStringLiteral("page.js")))
    {
    }

    void write()
    {
        const QByteArray page = resource(QStringLiteral("page.html"));
        int done = 0;
        for (int open = page.indexOf("{{"); open >= 0; open = page.indexOf("{{", done)) {
            const int close = page.indexOf("}}", open);
            device.write(page.constData() + done, open - done);
            writeNamed(page.mid(open + 2, close - open - 2));
            done = close + 2;
        }
        device.write(page.constData() + done, page.size() - done);
    }

private:
    void writeNamed(const QByteArray &name)
    {
        if (name == "data")
            writeCodebookData(device, layout, report);
        else
            device.write(textNamed(name));
    }

    QByteArray textNamed(const QByteArray &name) const
    {
        if (name == "policy")
            return policy();
        if (name == "version")
            return VAN_VERSION;
        if (name == "file")
            return html(QFileInfo(layout.file).fileName());
        if (name == "format")
            return layout.type->title;
        if (name == "counts")
            return counts();
        return name == "style" ? style : script;
    }

    // Nothing is loaded, and of what stands in the page nothing runs but its own style and script.
    QByteArray policy() const
    {
        return "default-src 'none'; style-src " + hashSource(style) + "; script-src " + hashSource(script)
            + "; base-uri 'none'; form-action 'none'";
    }

    QByteArray counts() const
    {
        int labels = 0;
        for (const TVpSourceField *field : *layout.provider.getFields())
            labels += cutValueLabels(field->valueLabels).size();
        QByteArray items = countItem(layout.provider.getFields()->size(), "variable", "variables");
        if (const int records = layout.importer->getGroupCount())
            items += countItem(records, "record", "records");
        items += countItem(labels, "value label", "value labels");
        return items + noteCounts();
    }

    // Of all notes, those that the report did not keep included.
    QByteArray noteCounts() const
    {
        QByteArray items;
        int sum = 0;
        for (const NoteGravity gravity : { NoteGravity::lost, NoteGravity::changed, NoteGravity::curious }) {
            const int count = report.count(gravity);
            if (count > 0)
                items += gravityItem(count, ReadReport::nameOf(gravity).toLatin1());
            sum += count;
        }
        return countItem(sum, "note:", sum == 0 ? "notes" : "notes:") + items;
    }

    QIODevice &device;
    const Layout &layout;
    const ReadReport &report;
    const QByteArray style;
    const QByteArray script;
};

// What a page must not be written to, or nothing.
QString problemWithOutput(const QString &output, const QString &file)
{
    const QFileInfo info(output);
    if (output.isEmpty())
        return QStringLiteral("no such file");
    if (info.isDir())
        return QStringLiteral("is a folder");
    if (info.exists() && info.canonicalFilePath() == QFileInfo(file).canonicalFilePath())
        return QStringLiteral("is the file to read");
    return QString();
}

// A file is replaced once all of the page is written; what is no file, a pipe for one, is written to.
QString writeToFile(const QString &name, const Layout &layout, const ReadReport &report)
{
    const QFileInfo info(name);
    std::unique_ptr<QFileDevice> file;
    if (info.exists() && !info.isFile())
        file = std::make_unique<QFile>(name);
    else
        file = std::make_unique<QSaveFile>(name);
    if (file->open(QIODevice::WriteOnly))
        PageWriter(*file, layout, report).write();
    auto *const saved = qobject_cast<QSaveFile *>(file.get());
    const bool isWritten = saved ? saved->commit() : file->isOpen() && file->flush();
    if (isWritten && file->error() == QFileDevice::NoError)
        return QString();
    return QStringLiteral("cannot be written: ") + file->errorString();
}

int writeToStandardOutput(const Layout &layout, const ReadReport &report)
{
    QFile out;
    if (out.open(stdout, QIODevice::WriteOnly)) {
        PageWriter(out, layout, report).write();
        out.close();
    }
    return statusAfterOutput(statusFine);
}

QString subjectOf(const QString &file)
{
    return file.isEmpty() ? QStringLiteral("''") : file;
}

int noAnswer(const QString &file, const QString &problem)
{
    complain(subjectOf(file), problem);
    return statusNoAnswer;
}

int writeCodebook(const QString &file, const QString &output, const FileType *type)
{
    const bool isStandardOutput = output == QLatin1String("-");
    QString problem = isStandardOutput ? QString() : problemWithOutput(output, file);
    if (!problem.isEmpty())
        return noAnswer(output, problem);
    ReadReport report;
    const Layout layout = readLayout(file, type, &report);
    if (!layout.problem.isEmpty())
        return noAnswer(file, layout.problem);
    if (isStandardOutput)
        return writeToStandardOutput(layout, report);
    problem = writeToFile(output, layout, report);
    return problem.isEmpty() ? statusFine : noAnswer(output, problem);
}

} // namespace

int writeCodebook(const CodebookOptions &options)
{
    answerDecimalQuestions(options.decimals);
    const QString file = QFile::decodeName(options.file.c_str());
    try {
        return writeCodebook(file, QFile::decodeName(options.output.c_str()), fileTypeNamed(options.type));
    } catch (const std::bad_alloc &) {
        return noAnswer(file, QStringLiteral("not enough memory"));
    }
}
