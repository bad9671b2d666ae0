#include "write/Codebook.h"

#include "write/CodebookData_p.h"
#include "write/HtmlPage_p.h"
#include "write/Wording_p.h"

#include <QFileInfo>
#include <QHash>

#include <algorithm>

namespace vanlayout
{

namespace
{

QByteArray countItem(qint64 count, const char *noun)
{
    return "<li><b>" + groupedNumber(count) + "</b> " + noun + (count == 1 ? "" : "s") + "</li>\n";
}

QByteArray fact(const char *term, const QByteArray &html)
{
    return html.isEmpty() ? QByteArray()
                          : QByteArray("<div><dt>") + term + "</dt><dd dir=\"auto\">" + html + "</dd></div>\n";
}

QByteArray fact(const char *term, const QString &text)
{
    return fact(term, htmlOf(text));
}

QString withoutT(std::optional<QString> date)
{
    return date ? date->replace(QLatin1Char('T'), QLatin1Char(' ')) : QString();
}

/// Counts for the head of a page.
class Counts
{
public:
    explicit Counts(const Layout &layout)
        : hasRecords(!holdsData(layout.format))
    {
        for (const Level &level : layout.levels) {
            add(level.ids);
            for (const Record &record : level.records) {
                ++records;
                add(record.items);
            }
        }
    }

    bool hasRecords; ///< whether there are record types: a statistical file has none
    int records = 0;
    qint64 items = 0;
    qint64 valueLabels = 0;

private:
    void add(const QVector<Item> &list)
    {
        items += list.size();
        for (const Item &item : list) {
            for (const ValueSet &set : item.valueSets)
                valueLabels += labelsOf(set.values);
        }
    }
    // Lists that items share are counted once.
    int labelsOf(const QVector<Value> &values)
    {
        auto known = labelsOfData.find(values.constData());
        if (known == labelsOfData.end())
            known = labelsOfData.insert(values.constData(),
                                        int(std::count_if(values.begin(), values.end(),
                                                          [](const Value &value) { return !value.labels.isEmpty(); })));
        return *known;
    }

    QHash<const Value *, int> labelsOfData;
};

/// The pieces that differ from page to page.
class CodebookPieces
{
public:
    CodebookPieces(const Layout &source, const CodebookOptions &codebookOptions)
        : layout(source)
        , options(codebookOptions)
    {
    }

    bool write(const QByteArray &name, QIODevice &device) const
    {
        return name == "data" ? writeCodebookData(layout, device, options) : writeBytes(device, textNamed(name));
    }

private:
    QByteArray textNamed(const QByteArray &name) const
    {
        if (name == "document-title")
            return title().isEmpty() ? QByteArray("Codebook") : htmlOf(title()) + " \u2013 codebook";
        if (name == "title")
            return title().isEmpty() ? QByteArray("Codebook") : htmlOf(title());
        if (name == "format")
            return htmlOf(describeFormat(layout));
        if (name == "facts")
            return facts();
        return counts();
    }

    QString title() const
    {
        const QString label = layout.labels.in(options.language);
        return label.isEmpty() ? layout.name : label;
    }

    QByteArray facts() const
    {
        const QString file = layout.file == QLatin1String("-") ? QString() : QFileInfo(layout.file).fileName();
        return fact("Name", layout.name) + fact("File", file) + fact("Version", version())
            + fact("Encoding", layout.encoding) + fact("Languages", languages()) + fact("Record type", recordType())
            + fact("Positions", positions()) + fact("Rows", layout.rows ? groupedNumber(*layout.rows) : QByteArray())
            + fact("Created", withoutT(layout.created)) + fact("Modified", withoutT(layout.modified))
            + fact("Weight", layout.weight) + fact("Aliases", layout.aliases.join(QLatin1String(", ")));
    }
    // The version of the format; empty if the description of the kind of file already has it.
    QString version() const
    {
        return describeFormat(layout).endsWith(layout.formatVersion) ? QString() : layout.formatVersion;
    }
    QString positions() const
    {
        if (!layout.relativePositions)
            return QString();
        return *layout.relativePositions ? QStringLiteral("relative") : QStringLiteral("absolute");
    }
    QString languages() const
    {
        QStringList names;
        for (const Language &language : layout.languages)
            names.append(language.label.isEmpty() ? language.name : language.label);
        return names.join(QLatin1String(", "));
    }
    QString recordType() const
    {
        if (!layout.recordType)
            return QString();
        const int start = layout.recordType->start;
        if (layout.recordType->length < 1)
            return QStringLiteral("column %1, length %2").arg(start).arg(layout.recordType->length);
        if (layout.recordType->length == 1)
            return QStringLiteral("column %1").arg(start);
        return QStringLiteral("columns %1\u2013%2").arg(start).arg(start + qint64(layout.recordType->length) - 1);
    }

    QByteArray counts() const
    {
        const Counts counts(layout);
        QByteArray items = countItem(counts.items, "variable");
        if (layout.levels.size() > 1)
            items += countItem(layout.levels.size(), "level");
        if (counts.hasRecords)
            items += countItem(counts.records, "record");
        return items + countItem(counts.valueLabels, "value label");
    }

    const Layout &layout;
    const CodebookOptions &options;
};

} // namespace

bool writeCodebook(const Layout &layout, QIODevice &device, const CodebookOptions &options)
{
    const HtmlPage page(QStringLiteral("codebook/page.html"), { QStringLiteral("codebook/page.css") },
                        { QStringLiteral("codebook/common.js"), QStringLiteral("codebook/page.js") });
    const CodebookPieces pieces(layout, options);
    return page.write(device, [&](const QByteArray &name, QIODevice &out) { return pieces.write(name, out); });
}

} // namespace vanlayout
