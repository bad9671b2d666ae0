#include "DdiFile_p.h"

#include "DdiElements_p.h"
#include "Wording_p.h"
#include "util/Numbers_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

// Data files of CSPro before 5.0 are in the code page of Windows, later ones in UTF-8.
QString csproCharset(const Layout &layout)
{
    bool isNumber = false;
    const double version = layout.formatVersion.toDouble(&isNumber);
    return isNumber && version < 5 ? QStringLiteral("windows-1252") : QStringLiteral("UTF-8");
}

class DdiFileWriter
{
public:
    DdiFileWriter(XmlStream &stream, const Layout &source, const DdiVariables &list, DdiProfile wantedProfile)
        : xml(stream)
        , layout(source)
        , variables(list)
        , isForIpums(wantedProfile == DdiProfile::Ipums)
        , hasTypeVariable(isForIpums && hasRecordTypes(source))
    {
    }

    void write()
    {
        xml.begin(QStringLiteral("fileDscr"));
        xml.attribute(QStringLiteral("ID"), ddiFileId());
        xml.begin(QStringLiteral("fileTxt"));
        writeElement(QStringLiteral("fileName"), layout.name);
        if (isForIpums)
            xml.empty(QStringLiteral("fileCont"));
        writeStructure();
        writeDimensions();
        writeFileType();
        if (isForIpums) {
            xml.textElement(QStringLiteral("format"),
                            isStatistical(layout) ? describeFormat(layout) : QStringLiteral("fixed length fields"));
            xml.empty(QStringLiteral("filePlac"));
        }
        writeVersion();
        xml.end();
        xml.end();
    }

private:
    void writeElement(const QString &element, const QString &text)
    {
        if (isForIpums)
            xml.textElement(element, text);
        else
            xml.textElementIfAny(element, text);
    }

    void writeStructure()
    {
        const bool isHierarchical = variables.records.size() > 1;
        xml.begin(QStringLiteral("fileStrc"));
        xml.attribute(QStringLiteral("type"),
                      isHierarchical ? QStringLiteral("hierarchical") : QStringLiteral("rectangular"));
        for (int i = 0; i < variables.records.size() && !isStatistical(layout); ++i)
            writeRecord(i);
        xml.end();
    }

    void writeRecord(int index)
    {
        const DdiRecord &entry = variables.records.at(index);
        xml.begin(QStringLiteral("recGrp"));
        xml.attribute(QStringLiteral("ID"), ddiRecordId(index));
        if (hasRecordTypes(layout))
            writeRecordType(*entry.record);
        writeIds(entry.level);
        writeDdiLabels(xml, entry.record->labels, QStringLiteral("record group"));
        if (entry.record->labels.isEmpty())
            xml.textElementIfAny(QStringLiteral("labl"), entry.record->name);
        writeRecordDimensions(entry);
        xml.end();
    }

    void writeRecordType(const Record &record)
    {
        xml.attribute(QStringLiteral("rectype"), record.recordType);
        xml.attribute(QStringLiteral("rtypeloc"), layout.recordType->start);
        xml.attribute(QStringLiteral("rtypewidth"), layout.recordType->length);
        xml.attribute(QStringLiteral("rtypevtype"), ddiRecordTypeFormat(layout));
    }

    // The keys of a record are all ids on its lines, including those of the levels above; its own ids are those of its
    // level.
    void writeIds(int levelNumber)
    {
        QStringList keys;
        QStringList own;
        for (int i = 0; i <= levelNumber; ++i) {
            const DdiSpan ids = variables.levels.at(i).ids;
            for (int k = ids.first; k < ids.end; ++k) {
                keys.append(variables.all.at(k).id);
                if (i == levelNumber)
                    own.append(variables.all.at(k).column.name);
            }
        }
        xml.attributeIfAny(QStringLiteral("keyvar"), keys.join(QLatin1Char(' ')));
        xml.attributeIfAny(QStringLiteral("recidvar"),
                           hasTypeVariable ? variables.recordTypeId : own.join(QLatin1Char(' ')));
    }

    void writeRecordDimensions(const DdiRecord &entry)
    {
        int count = entry.variables.size();
        for (int i = 0; i <= entry.level; ++i)
            count += variables.levels.at(i).ids.size();
        xml.begin(QStringLiteral("recDimnsn"));
        xml.textElement(QStringLiteral("varQnty"), count);
        if (entry.record->length)
            xml.textElement(QStringLiteral("logRecL"), *entry.record->length);
        xml.end();
    }

    void writeDimensions()
    {
        xml.begin(QStringLiteral("dimensns"));
        if (layout.rows)
            xml.textElement(QStringLiteral("caseQnty"), *layout.rows);
        xml.textElement(QStringLiteral("varQnty"), variables.all.size() + (hasTypeVariable ? 1 : 0));
        xml.end();
    }

    // The encoding of a dictionary is not that of its data, which a dictionary does not state.
    void writeFileType()
    {
        const bool isData = isStatistical(layout);
        const QString charset = isData ? layout.encoding : isForIpums ? csproCharset(layout) : QString();
        if (!isData && charset.isEmpty())
            return;
        xml.begin(QStringLiteral("fileType"));
        xml.attributeIfAny(QStringLiteral("charset"), charset);
        if (isData)
            xml.content(describeFormat(layout));
        xml.end();
    }

    // The dates of a statistical file are the dates of its data.
    void writeVersion()
    {
        const std::optional<QString> date = layout.modified ? layout.modified : layout.created;
        if (!date)
            return;
        xml.begin(QStringLiteral("verStmt"));
        xml.empty(QStringLiteral("version"));
        xml.attribute(QStringLiteral("date"), *date);
        xml.end();
    }

    XmlStream &xml;
    const Layout &layout;
    const DdiVariables &variables;
    bool isForIpums;
    bool hasTypeVariable;
};

} // namespace

void writeDdiFile(XmlStream &xml, const Layout &layout, const DdiVariables &variables, DdiProfile profile)
{
    DdiFileWriter(xml, layout, variables, profile).write();
}

QString ddiRecordId(int record)
{
    return QLatin1String("record-") + QString::number(record + 1);
}

QString ddiRecordTypes(const Layout &layout, const DdiVariables &variables, int first, int end)
{
    QStringList types;
    for (int i = first; i < end && hasRecordTypes(layout); ++i) {
        const QString type = variables.records.at(i).record->recordType;
        if (!type.isEmpty())
            types.append(type);
    }
    types.removeDuplicates();
    return types.join(QLatin1Char(' '));
}

QString ddiRecordTypeFormat(const Layout &layout)
{
    for (const Level &level : layout.levels) {
        for (const Record &record : level.records) {
            bool isNumber = false;
            numbers::toInt(record.recordType, &isNumber);
            if (!isNumber)
                return QStringLiteral("character");
        }
    }
    return QStringLiteral("numeric");
}

} // namespace vanlayout
