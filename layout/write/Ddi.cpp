#include "Ddi.h"

#include "DdiElements_p.h"
#include "DdiFile_p.h"
#include "DdiGroups_p.h"
#include "DdiVariableWriter_p.h"
#include "DdiVariables_p.h"

namespace vanlayout
{

namespace
{

/// Writes the sections of a document in their order.
class DdiWriter
{
public:
    DdiWriter(const Layout &source, QIODevice &device, const DdiOptions &wanted)
        : layout(source)
        , options(wanted)
        , xml(device)
        , variables(source)
    {
    }

    bool write()
    {
        xml.beginDocument();
        xml.begin(QStringLiteral("codeBook"));
        xml.defaultNamespace(QStringLiteral("ddi:codebook:2_5"));
        xml.attribute(QStringLiteral("version"), QStringLiteral("2.5"));
        writeDescription(QStringLiteral("docDscr"), Subject::Document);
        writeDescription(QStringLiteral("stdyDscr"), Subject::Study);
        writeDdiFile(xml, layout, variables, options.profile);
        writeData();
        xml.end();
        return xml.endDocument();
    }

private:
    enum class Subject { Document, Study };

    void writeDescription(const QString &section, Subject subject)
    {
        const bool isStudy = subject == Subject::Study;
        const bool hasUseStatement = isStudy && options.profile == DdiProfile::Ipums;
        xml.begin(section);
        xml.begin(QStringLiteral("citation"));
        xml.begin(QStringLiteral("titlStmt"));
        writeTitles();
        if (hasUseStatement)
            xml.empty(QStringLiteral("IDNo"));
        xml.end();
        if (hasUseStatement)
            writeSeries();
        xml.end();
        if (hasUseStatement)
            writeUseStatement();
        if (isStudy) {
            writeDdiNote(xml, QStringLiteral("note"), layout.note);
            writeDdiAliases(xml, layout.aliases);
        }
        xml.end();
    }

    // Readers of extracts require the series and the conditions of use, which a layout does not have.
    void writeSeries()
    {
        xml.begin(QStringLiteral("serStmt"));
        xml.empty(QStringLiteral("serName"));
        xml.end();
    }
    void writeUseStatement()
    {
        xml.begin(QStringLiteral("dataAccs"));
        xml.begin(QStringLiteral("useStmt"));
        xml.empty(QStringLiteral("citReq"));
        xml.empty(QStringLiteral("conditions"));
        xml.end();
        xml.end();
    }

    QVector<Label> titleParts() const
    {
        if (!options.title.isEmpty())
            return { { QString(), options.title } };
        QVector<Label> titles;
        for (const Label &label : layout.labels.parts) {
            const QString title = label.text.trimmed();
            if (!title.isEmpty())
                titles.append({ label.language, title });
        }
        return titles.isEmpty() ? QVector<Label>{ { QString(), layout.name } } : titles;
    }

    // The title in the first language, followed by the parallel titles in the others.
    void writeTitles()
    {
        const QVector<Label> titles = titleParts();
        for (int i = 0; i < titles.size(); ++i) {
            xml.begin(i == 0 ? QStringLiteral("titl") : QStringLiteral("parTitl"));
            xml.language(titles.at(i).language);
            xml.content(titles.at(i).text);
            xml.end();
        }
    }

    void writeData()
    {
        xml.begin(QStringLiteral("dataDscr"));
        writeDdiGroups(xml, layout, variables);
        DdiVariableWriter writer(xml, layout, options.profile);
        if (options.profile == DdiProfile::Ipums && hasRecordTypes(layout))
            writeRecordType();
        for (const DdiLevel &level : qAsConst(variables.levels))
            writeLevel(writer, level);
        for (const Relation &relation : layout.relations)
            writeRelation(relation);
        xml.end();
    }

    // The variable for the type of a record; its categories are the records.
    void writeRecordType()
    {
        const RecordTypeColumns &columns = *layout.recordType;
        xml.begin(QStringLiteral("var"));
        xml.attribute(QStringLiteral("ID"), variables.recordTypeId);
        xml.attribute(QStringLiteral("name"), variables.recordTypeId);
        xml.attribute(QStringLiteral("files"), ddiFileId());
        xml.attribute(QStringLiteral("dcml"), 0);
        xml.attributeIfAny(QStringLiteral("rectype"), ddiRecordTypes(layout, variables, 0, variables.records.size()));
        writeDdiLocation(xml, columns.start, columns.length);
        xml.textElement(QStringLiteral("labl"), QStringLiteral("Record type"));
        xml.empty(QStringLiteral("txt"));
        for (const DdiRecord &entry : qAsConst(variables.records))
            writeRecordCategory(*entry.record);
        xml.empty(QStringLiteral("concept"));
        xml.empty(QStringLiteral("varFormat"));
        xml.attribute(QStringLiteral("type"), ddiRecordTypeFormat(layout));
        xml.end();
    }

    void writeRecordCategory(const Record &record)
    {
        xml.begin(QStringLiteral("catgry"));
        xml.textElement(QStringLiteral("catValu"), record.recordType);
        writeDdiLabels(xml, record.labels, QString());
        if (record.labels.isEmpty())
            xml.textElement(QStringLiteral("labl"), record.name);
        xml.end();
    }

    void writeLevel(DdiVariableWriter &writer, const DdiLevel &level)
    {
        const QString below = ddiRecordTypes(layout, variables, level.records.first, variables.records.size());
        for (int i = level.ids.first; i < level.ids.end; ++i)
            writer.write(variables.all.at(i), below);
        for (int r = level.records.first; r < level.records.end; ++r) {
            const DdiSpan span = variables.records.at(r).variables;
            const QString own = ddiRecordTypes(layout, variables, r, r + 1);
            for (int i = span.first; i < span.end; ++i)
                writer.write(variables.all.at(i), own);
        }
    }

    void writeRelation(const Relation &relation)
    {
        const QString byNumber = QStringLiteral("(occurrence number)");
        QStringList lines;
        for (const RelationLink &link : relation.links) {
            lines.append(QStringLiteral("%1, %2 = %3, %4")
                             .arg(relation.primary, link.primaryLink.isEmpty() ? byNumber : link.primaryLink,
                                  link.secondary, link.secondaryLink.isEmpty() ? byNumber : link.secondaryLink));
        }
        xml.begin(QStringLiteral("notes"));
        xml.attribute(QStringLiteral("type"), QStringLiteral("relation"));
        xml.attributeIfAny(QStringLiteral("subject"), relation.name);
        xml.content(lines.join(QLatin1Char('\n')));
        xml.end();
    }

    const Layout &layout;
    const DdiOptions &options;
    XmlStream xml;
    DdiVariables variables;
};

} // namespace

bool writeDdi(const Layout &layout, QIODevice &device, const DdiOptions &options)
{
    return DdiWriter(layout, device, options).write();
}

} // namespace vanlayout
