#include "Layout.h"

#include "InputFile.h"
#include "cspro/CSProDataImport.h"
#include "statistical/STATADataImport.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <algorithm>
#include <cstdio>
#include <new>

namespace
{

// Returns the reason why a file cannot be read; if it can, sets \a type by content unless it is given.
QString readingProblem(const QString &fileName, const FileType *&type)
{
    QString problem = openingProblem(fileName);
    if (!problem.isEmpty())
        return problem;
    // A pipe whose first bytes cannot be examined is read as a CSPro text dictionary.
    if (!type)
        type = &fileTypeOf(headOf(fileName, importHeadSize));
    if (!type->canBePiped && !QFileInfo(fileName).isFile())
        return QLatin1String(type->title) + QLatin1String(": not read from a pipe");
    return QString();
}

QString describe(const VpErrorManager &error)
{
    return QStringLiteral("reading ended in error %1: %2").arg(error.getCode()).arg(error.catalogueMessage());
}

bool isOfReadStat(const FileType &type)
{
    return type.format == ImportFormat::Stata || type.format == ImportFormat::Spss;
}

/// Receives the importer's own line about a failed reading, which has the unchanged file name, and logs it, so that it
/// is only printed with the other debug lines of the library.
class ErrorLine
{
public:
    ErrorLine(const FileType &type, TDataImport &importer)
    {
        if (type.format != ImportFormat::Stata)
            return;
        stata = &static_cast<TSTATADataImport &>(importer);
        if (QLoggingCategory::defaultCategory()->isDebugEnabled())
            stream.reset(std::tmpfile());
        stata->setErrorStream(stream.get());
    }
    ~ErrorLine()
    {
        if (!stata)
            return;
        stata->setErrorStream(nullptr);
        QFile lines;
        if (stream && std::fseek(stream.get(), 0, SEEK_SET) == 0 && lines.open(stream.get(), QIODevice::ReadOnly)) {
            const QString text = QString::fromLocal8Bit(lines.readAll());
            if (!text.isEmpty())
                qDebug().noquote() << text.chopped(1);
        }
    }
    ErrorLine(const ErrorLine &) = delete;
    ErrorLine &operator=(const ErrorLine &) = delete;

private:
    struct Closer {
        void operator()(std::FILE *file) const { std::fclose(file); }
    };

    TSTATADataImport *stata = nullptr;
    std::unique_ptr<std::FILE, Closer> stream;
};

// The cause that ended reading before the end of the file; empty if there was none.
QString endOfReading(const ReadReport &report)
{
    const std::vector<ReadNote> &notes = report.notes();
    const auto end = std::find_if(notes.rbegin(), notes.rend(), [](const ReadNote &note) {
        return note.kind == NoteKind::fileNotRead || note.kind == NoteKind::readingEnded
            || note.kind == NoteKind::versionRefused;
    });
    return end == notes.rend() ? QString() : end->text;
}

QString nothingFound(const FileType &type, const QString &reason)
{
    const QString problem = QStringLiteral("no variable found, read as %1 %2")
                                .arg(QLatin1String(type.article), QLatin1String(type.title));
    return reason.isEmpty() ? problem : problem + QLatin1String(": ") + reason;
}

} // namespace

DecimalAnswerFunction decimalAnswer(const std::string &decimals)
{
    if (decimals == "ask")
        return {};
    const DecimalAnswer answer = decimals == "yes" ? DecimalAnswer::yesToAll : DecimalAnswer::noToAll;
    return [answer](const DecimalQuestion & /*question*/) { return answer; };
}

Layout readLayout(const QString &file, const FileType *type, const DecimalAnswerFunction &decimals, ReadReport *report)
{
    const bool isUnseenPipe = !type && !QFileInfo(file).isFile();
    Layout layout;
    layout.file = file;
    layout.problem = readingProblem(file, type);
    layout.type = type;
    if (!layout.problem.isEmpty() || !type)
        return layout;
    ReadReport ownReport; // for the reason of a failure
    if (!report && isOfReadStat(*type))
        report = &ownReport;
    try {
        layout.importer = makeImporter(type->format, file);
        layout.importer->setReadReport(report);
        if (auto *textImporter = dynamic_cast<TCSProDataImport *>(layout.importer.get()))
            textImporter->setDecimalAnswer(decimals);
        const ErrorLine errorLine(*type, *layout.importer);
        const std::unique_ptr<QStringList> names(layout.importer->selectLayoutSource());
        layout.provider.genericGetFieldsFrom(layout.importer.get());
        if (isOfReadStat(*type))
            layout.incomplete = endOfReading(*report);
        if (layout.provider.getFields()->isEmpty())
            layout.problem = nothingFound(
                *type, isUnseenPipe ? QStringLiteral("--type states the format of a pipe") : layout.incomplete);
    } catch (VpErrorManager *error) {
        layout.error.reset(error);
        layout.problem = describe(*error);
    } catch (const std::bad_alloc &) {
        releaseContents(layout); // the next file may need less
        throw;
    }
    layout.importer->setReadReport(nullptr);
    const QString readProblem = layout.importer->getReadProblem();
    if (!readProblem.isEmpty())
        layout.problem = readProblem;
    return layout;
}

void releaseContents(Layout &layout)
{
    layout.provider.releaseContents();
    if (layout.importer)
        layout.importer->releaseContents();
}

QVector<ValueLabel> cutValueLabels(const QString &text)
{
    QVector<ValueLabel> labels;
    int begin = 0;
    while (begin < text.size()) {
        const int tab = text.indexOf(QLatin1Char('\t'), begin);
        const int end = tab < 0 ? text.size() : tab;
        const QStringView entry = QStringView(text).mid(begin, end - begin);
        const auto blank = entry.indexOf(QLatin1Char(' '));
        labels.append({ blank < 0 ? entry : entry.left(blank), blank < 0 ? QStringView() : entry.mid(blank + 1) });
        begin = end + 1;
    }
    return labels;
}
