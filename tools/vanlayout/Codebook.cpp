#include "Codebook.h"

#include "Answer.h"
#include "CodebookData.h"
#include "Gravities.h"
#include "OutputFile.h"
#include "Printable.h"
#include "Resource.h"
#include "import/SourceField.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QLocale>

namespace
{

QByteArray pieceOfPage(const QString &name)
{
    return resource(QLatin1String(":/codebook/") + name);
}

// A text in HTML, in an element or in quotes.
QByteArray html(const QString &text)
{
    return printable(text).toHtmlEscaped().toUtf8();
}

// What a policy names the content of an element by.
QByteArray hashSource(const QByteArray &content)
{
    return "'sha256-" + QCryptographicHash::hash(content, QCryptographicHash::Sha256).toBase64() + '\'';
}

// As the page's script writes a number.
QByteArray written(qint64 count)
{
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(count).toLatin1();
}

QByteArray countItem(qint64 count, const char *one, const char *several)
{
    return "<li><b>" + written(count) + "</b> " + (count == 1 ? one : several) + "</li>\n";
}

QByteArray gravityItem(qint64 count, const QByteArray &gravity)
{
    return "<li><a href=\"#page-" + gravity + "\"><b>" + written(count) + "</b> " + gravity + "</a></li>\n";
}

/// Writes the page: its template with what stands in place of each name in double braces.
class PageWriter
{
public:
    PageWriter(QIODevice &target, const Layout &readLayout, const ReadReport &readReport)
        : device(target)
        , layout(readLayout)
        , report(readReport)
        , style(pieceOfPage(QStringLiteral("page.css")))
        , script(pieceOfPage(QStringLiteral("page.js")))
    {
    }

    void write()
    {
        const QByteArray page = pieceOfPage(QStringLiteral("page.html"));
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
        QByteArray items = countItem(layout.provider.getFields()->size(), "variable", "variables");
        if (const int records = layout.importer->getGroupCount())
            items += countItem(records, "record", "records");
        items += countItem(valueLabelCount(), "value label", "value labels");
        return items + noteCounts();
    }

    // Of every variable its own. A set that variables hold in common, as all occurrences of an item do, is cut once.
    qint64 valueLabelCount() const
    {
        QHash<const QChar *, int> counts;
        qint64 sum = 0;
        for (const TVpSourceField *field : *layout.provider.getFields()) {
            auto count = counts.find(field->valueLabels.constData());
            if (count == counts.end())
                count = counts.insert(field->valueLabels.constData(), cutValueLabels(field->valueLabels).size());
            sum += *count;
        }
        return sum;
    }

    // Of all notes, those that the report did not keep included.
    QByteArray noteCounts() const
    {
        QByteArray items;
        qint64 sum = 0;
        for (const NoteGravity gravity : gravities) {
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

} // namespace

int writeCodebook(const CodebookOptions &options)
{
    answerDecimalQuestions(options.decimals);
    const QString file = QFile::decodeName(options.file.c_str());
    return answerFor(file, [&]() -> int {
        ReadReport report;
        const Layout layout = readLayout(file, fileTypeNamed(options.type), &report);
        if (!layout.problem.isEmpty())
            return noAnswerFor(file, layout.problem);
        complainIfIncomplete(file, layout.incomplete);
        return writeAnswer(QFile::decodeName(options.output.c_str()), file,
                           [&](QIODevice &device) { PageWriter(device, layout, report).write(); });
    });
}
