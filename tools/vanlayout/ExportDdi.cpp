#include "Export.h"

#include "ExportedVariable.h"
#include "Records.h"
#include "util/KeyedHash_p.h"

#include <QXmlStreamWriter>

namespace
{

constexpr ushort firstPicture = 0x2400; // the signs of the control characters, in their order

// Of a unit that is no half of a surrogate pair.
bool isHeldByXml(QChar unit)
{
    const ushort code = unit.unicode();
    if (code < 0x20)
        return code == '\t' || code == '\n'; // a parser makes a line feed of CR
    return code < 0xFFFE;
}

QChar visibleSign(QChar unit)
{
    return unit.unicode() < 0x20 ? QChar(firstPicture + unit.unicode()) : QChar(QChar::ReplacementCharacter);
}

// The text with a sign in place of each character that XML cannot hold.
QString xmlText(const QString &text)
{
    QString shown = wholeCharacters(text);
    for (QChar &unit : shown) {
        if (!isHeldByXml(unit))
            unit = visibleSign(unit);
    }
    return shown;
}

class DdiWriter
{
public:
    DdiWriter(const Layout &source, QIODevice &device)
        : layout(source)
        , fields(*source.provider.getFields())
        , xml(&device)
        , isInColumns(hasColumns(source))
    {
        xml.setAutoFormatting(true);
        xml.setAutoFormattingIndent(2);
        readRecordTypes();
    }

    void write()
    {
        xml.writeStartDocument();
        xml.writeStartElement(QStringLiteral("codeBook"));
        xml.writeDefaultNamespace(QStringLiteral("ddi:codebook:2_5"));
        xml.writeAttribute(QStringLiteral("version"), QStringLiteral("2.5"));
        writeCitation(QStringLiteral("docDscr"));
        writeCitation(QStringLiteral("stdyDscr"));
        writeFile();
        xml.writeStartElement(QStringLiteral("dataDscr"));
        for (int i = 0; i < fields.size(); ++i)
            writeVariable(*fields.at(i), i + 1);
        xml.writeEndElement();
        xml.writeEndElement();
        xml.writeEndDocument();
    }

private:
    // Where all records are alike, their only group is no type.
    void readRecordTypes()
    {
        if (layout.importer->isMultiple())
            recordTypes = recordTypesOf(layout);
        for (const RecordType &type : qAsConst(recordTypes))
            recordTypesOfName[type.name].append(type.value);
        for (const TVpSourceField *field : fields)
            ++variableCounts[field->group];
    }

    void writeCitation(const QString &description)
    {
        xml.writeStartElement(description);
        xml.writeStartElement(QStringLiteral("citation"));
        xml.writeStartElement(QStringLiteral("titlStmt"));
        writeText(QStringLiteral("titl"), titleOf(layout));
        xml.writeEndElement();
        xml.writeEndElement();
        xml.writeEndElement();
    }

    void writeFile()
    {
        xml.writeStartElement(QStringLiteral("fileDscr"));
        xml.writeAttribute(QStringLiteral("ID"), fileId);
        xml.writeStartElement(QStringLiteral("fileTxt"));
        writeText(QStringLiteral("fileName"), titleOf(layout));
        if (!recordTypes.isEmpty())
            writeRecordTypes();
        xml.writeStartElement(QStringLiteral("dimensns"));
        writeText(QStringLiteral("varQnty"), QString::number(fields.size()));
        xml.writeEndElement();
        if (!isInColumns) // elsewhere the data are in another file
            writeText(QStringLiteral("fileType"), QLatin1String(layout.type->title));
        xml.writeEndElement();
        xml.writeEndElement();
    }

    void writeRecordTypes()
    {
        xml.writeStartElement(QStringLiteral("fileStrc"));
        xml.writeAttribute(QStringLiteral("type"), QStringLiteral("hierarchical"));
        for (int i = 0; i < recordTypes.size(); ++i)
            writeRecordType(recordTypes.at(i), i + 1);
        xml.writeEndElement();
    }

    void writeRecordType(const RecordType &type, int number)
    {
        bool isNumeric = false;
        type.value.toInt(&isNumeric);
        xml.writeStartElement(QStringLiteral("recGrp"));
        xml.writeAttribute(QStringLiteral("ID"), QLatin1Char('R') + QString::number(number));
        writeAttribute(QStringLiteral("rectype"), type.value);
        writeAttribute(QStringLiteral("rtypeloc"), QString::number(layout.provider.getRecordTypeStart()));
        writeAttribute(QStringLiteral("rtypewidth"), QString::number(layout.provider.getRecordTypeSize()));
        writeAttribute(QStringLiteral("rtypevtype"),
                       isNumeric ? QStringLiteral("numeric") : QStringLiteral("character"));
        writeText(QStringLiteral("labl"), type.name);
        if (isNameOfOneRecord(type.name)) {
            xml.writeStartElement(QStringLiteral("recDimnsn"));
            writeText(QStringLiteral("varQnty"), QString::number(variableCounts[type.name]));
            xml.writeEndElement();
        }
        xml.writeEndElement();
    }

    // Of two records that share a name, the layout does not tell to which one a variable belongs.
    bool isNameOfOneRecord(const QString &name) const
    {
        const auto types = recordTypesOfName.find(name);
        return types != recordTypesOfName.end() && types->second.size() == 1;
    }

    void writeVariable(const TVpSourceField &field, int number)
    {
        const QVector<Category> categories = categoriesOf(field);
        const ValueKind kind = kindOf(field);
        xml.writeStartElement(QStringLiteral("var"));
        writeVariableAttributes(field, kind, number);
        writeLocation(field);
        writeTextIfAny(QStringLiteral("labl"), field.label);
        if (isNumber(kind)) {
            writeValidRange(field, kind);
            writeInvalidValues(field, kind);
        }
        for (const Category &category : categories)
            writeCategory(category);
        writeFormat(kind);
        xml.writeEndElement();
    }

    void writeVariableAttributes(const TVpSourceField &field, ValueKind kind, int number)
    {
        const bool isContinuous = isNumber(kind) && field.valueLabels.isEmpty();
        writeAttribute(QStringLiteral("ID"), QLatin1Char('V') + QString::number(number));
        writeAttribute(QStringLiteral("name"), field.fieldName);
        writeAttribute(QStringLiteral("files"), fileId);
        if (kind == ValueKind::whole) // of a real number the layout does not tell the decimals
            writeAttribute(QStringLiteral("dcml"), QStringLiteral("0"));
        writeAttribute(QStringLiteral("intrvl"), isContinuous ? QStringLiteral("contin") : QStringLiteral("discrete"));
        if (isNameOfOneRecord(field.group))
            writeAttribute(QStringLiteral("rectype"), recordTypesOfName[field.group].first());
    }

    void writeLocation(const TVpSourceField &field)
    {
        if (field.start <= 0 || field.length <= 0)
            return;
        xml.writeEmptyElement(QStringLiteral("location"));
        writeAttribute(QStringLiteral("StartPos"), QString::number(field.start));
        writeAttribute(QStringLiteral("EndPos"), QString::number(qint64(field.start) + field.length - 1));
        writeAttribute(QStringLiteral("width"), QString::number(field.length));
        writeAttribute(QStringLiteral("fileid"), fileId);
    }

    void writeValidRange(const TVpSourceField &field, ValueKind kind)
    {
        const Bounds bounds = isInColumns ? boundsOf(field, kind) : Bounds();
        if (bounds.minimum.isEmpty() && bounds.maximum.isEmpty())
            return;
        xml.writeStartElement(QStringLiteral("valrng"));
        xml.writeEmptyElement(QStringLiteral("range"));
        writeUnits(kind);
        if (!bounds.minimum.isEmpty())
            writeAttribute(QStringLiteral("min"), bounds.minimum);
        if (!bounds.maximum.isEmpty())
            writeAttribute(QStringLiteral("max"), bounds.maximum);
        xml.writeEndElement();
    }

    void writeInvalidValues(const TVpSourceField &field, ValueKind kind)
    {
        const QStringList codes = missingCodesOf(field);
        if (codes.isEmpty())
            return;
        xml.writeStartElement(QStringLiteral("invalrng"));
        for (const QString &code : codes) {
            xml.writeEmptyElement(QStringLiteral("item"));
            writeUnits(kind);
            writeAttribute(QStringLiteral("VALUE"), code);
        }
        xml.writeEndElement();
    }

    void writeUnits(ValueKind kind)
    {
        const bool isWhole = kind == ValueKind::whole;
        writeAttribute(QStringLiteral("UNITS"), isWhole ? QStringLiteral("INT") : QStringLiteral("REAL"));
    }

    void writeCategory(const Category &category)
    {
        xml.writeStartElement(QStringLiteral("catgry"));
        if (category.isMissing)
            writeAttribute(QStringLiteral("missing"), QStringLiteral("Y"));
        writeText(QStringLiteral("catValu"), category.code);
        writeTextIfAny(QStringLiteral("labl"), category.label);
        xml.writeEndElement();
    }

    void writeFormat(ValueKind kind)
    {
        if (kind == ValueKind::unknown)
            return;
        xml.writeEmptyElement(QStringLiteral("varFormat"));
        writeAttribute(QStringLiteral("type"),
                       kind == ValueKind::text ? QStringLiteral("character") : QStringLiteral("numeric"));
    }

    void writeAttribute(const QString &name, const QString &value) { xml.writeAttribute(name, xmlText(value)); }

    void writeText(const QString &element, const QString &text) { xml.writeTextElement(element, xmlText(text)); }

    void writeTextIfAny(const QString &element, const QString &text)
    {
        if (!text.isEmpty())
            writeText(element, text);
    }

    const QString fileId = QStringLiteral("F1");

    const Layout &layout;
    const QList<TVpSourceField *> &fields;
    QXmlStreamWriter xml;
    bool isInColumns;
    QVector<RecordType> recordTypes;
    KeyedMap<QString, QStringList> recordTypesOfName; ///< their values
    KeyedMap<QString, int> variableCounts;            ///< by group
};

} // namespace

void writeDdi(const Layout &layout, QIODevice &device)
{
    DdiWriter(layout, device).write();
}
