#include "Layout.h"

#include "InputFile.h"
#include "statistical/STATADataImport.h"

#include <QFile>
#include <QFileInfo>

namespace
{

// Says why a file cannot be read, or finds its type by content.
QString readingProblem(const QString &fileName, const FileType *&type)
{
    QString problem = openingProblem(fileName);
    if (!problem.isEmpty())
        return problem;
    // A pipe can be read once: it is what --type says, or a CSPro text dictionary.
    const bool canPeek = QFileInfo(fileName).isFile();
    if (!type) {
        QFile file(fileName);
        type = &fileTypeOf(canPeek && file.open(QIODevice::ReadOnly) ? file.read(importHeadSize) : QByteArray());
    }
    if (!canPeek && !type->canBePiped)
        return QLatin1String(type->title) + QLatin1String(": not read from a pipe");
    return QString();
}

QString describe(const VpErrorManager &error)
{
    return QStringLiteral("reading ended in error %1: %2").arg(error.getCode()).arg(error.catalogueMessage());
}

// Standard output holds the result alone.
std::unique_ptr<TDataImport> makeImporterFor(const FileType &type, const QString &file)
{
    auto importer = makeImporter(type.format, file);
    if (type.format == ImportFormat::Stata)
        static_cast<TSTATADataImport &>(*importer).setErrorStream(stderr);
    return importer;
}

} // namespace

Layout readLayout(const QString &file, const FileType *type, ReadReport *report)
{
    Layout layout;
    layout.file = file;
    layout.problem = readingProblem(file, type);
    layout.type = type;
    if (!layout.problem.isEmpty())
        return layout;
    try {
        layout.importer = makeImporterFor(*type, file);
        layout.importer->setReadReport(report);
        const std::unique_ptr<QStringList> names(layout.importer->selectLayoutSource());
        layout.provider.genericGetFieldsFrom(layout.importer.get());
        if (layout.provider.getFields()->isEmpty())
            layout.problem = QStringLiteral("no variable found, read as %1 %2")
                                 .arg(QLatin1String(type->article), QLatin1String(type->title));
    } catch (VpErrorManager *error) {
        layout.error.reset(error);
        layout.problem = describe(*error);
    }
    const QString readProblem = layout.importer->getReadProblem();
    if (!readProblem.isEmpty())
        layout.problem = readProblem;
    return layout;
}

QVector<ValueLabel> cutValueLabels(const QString &text)
{
    QVector<ValueLabel> labels;
    int begin = 0;
    while (begin < text.size()) {
        const int tab = text.indexOf(QLatin1Char('\t'), begin);
        const int end = tab < 0 ? text.size() : tab;
        const QStringRef entry = text.midRef(begin, end - begin);
        const int blank = entry.indexOf(QLatin1Char(' '));
        labels.append({ entry.left(blank), blank < 0 ? QStringRef() : entry.mid(blank + 1) });
        begin = end + 1;
    }
    return labels;
}
