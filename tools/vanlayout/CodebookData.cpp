#include "CodebookData.h"

#include "DeviceStream.h"
#include "ExportedVariable.h"
#include "Json.h"
#include "Records.h"
#include "import/SourceField.h"
#include "util/KeyedHash_p.h"

#include <rapidjson/writer.h>

#include <QHash>

#include <algorithm>
#include <array>
#include <cstring>

namespace
{

using Json = rapidjson::Writer<DeviceStream>;

// Whether a character can stand for itself inside of a JSON text inside of a script element.
bool isPlain(QChar unit)
{
    const ushort code = unit.unicode();
    if (code < 0xA0)
        return code >= ' ' && code < 0x7F && !std::strchr("\"\\<>&", code);
    return code != QChar::LineSeparator && code != QChar::ParagraphSeparator && !unit.isSurrogate() && code < 0xFFFE;
}

void writeText(Json &json, QStringView text)
{
    QString literal(1, QLatin1Char('"'));
    for (const QChar unit : text) {
        if (isPlain(unit))
            literal += unit;
        else
            literal += QLatin1String(jsonEscape(unit));
    }
    literal += QLatin1Char('"');
    const QByteArray utf8 = literal.toUtf8();
    json.RawValue(utf8.constData(), size_t(utf8.size()), rapidjson::kStringType);
}

void writeSome(Json &json, const char *key, const QString &text)
{
    if (text.isEmpty())
        return;
    json.Key(key);
    writeText(json, text);
}

void writeSome(Json &json, const char *key, int number)
{
    if (number == 0)
        return;
    json.Key(key);
    json.Int(number);
}

/// Numbers for texts, from 0 in the order in which they come first. Long ones that share their data are compared once.
class Numbering
{
public:
    int numberOf(const QString &text)
    {
        const auto same = numbersOfData.constFind(text.constData());
        if (same != numbersOfData.constEnd())
            return same->number;
        const auto [known, isNew] = numbers.emplace(text, texts.size());
        if (isNew)
            texts.append(text);
        numbersOfData.insert(text.constData(), { text, known->second });
        return known->second;
    }
    const QStringList &inOrder() const { return texts; }

private:
    struct Numbered {
        QString text; // keeps its data where it is
        int number = 0;
    };

    KeyedMap<QString, int> numbers;
    QHash<const QChar *, Numbered> numbersOfData;
    QStringList texts;
};

class DataWriter
{
public:
    DataWriter(Json &writer, const Layout &readLayout, const ReadReport &readReport)
        : json(writer)
        , layout(readLayout)
        , report(readReport)
        , fields(*readLayout.provider.getFields())
    {
    }

    void write()
    {
        json.StartObject();
        json.Key("inColumns");
        json.Bool(hasColumns(layout));
        writeRecordType();
        writeFields();
        writeLabelSets();
        writeGroups();
        writeKinds();
        writeNotes();
        json.EndObject();
    }

private:
    void writeRecordType()
    {
        if (layout.provider.getRecordTypeStart() <= 0 || layout.provider.getRecordTypeSize() <= 0)
            return;
        json.Key("recordType");
        json.StartObject();
        writeSome(json, "start", layout.provider.getRecordTypeStart());
        writeSome(json, "length", layout.provider.getRecordTypeSize());
        json.EndObject();
    }

    void writeFields()
    {
        json.Key("variables");
        json.StartArray();
        for (const TVpSourceField *field : fields)
            writeField(*field);
        json.EndArray();
    }

    void writeField(const TVpSourceField &field)
    {
        json.StartObject();
        json.Key("name");
        writeText(json, field.fieldName);
        writeSome(json, "label", field.label);
        writeSome(json, "type", field.FieldType);
        writeSome(json, "start", field.start);
        writeSome(json, "length", field.length);
        writeSome(json, "decimals", field.decimals);
        writeSome(json, "minimum", field.minimum);
        writeSome(json, "maximum", field.maximum);
        writeSome(json, "notApplicable", field.notApplicable);
        writeSome(json, "missing", field.missingValue);
        writeSome(json, "group", groups.numberOf(field.group));
        if (!field.valueLabels.isEmpty()) {
            json.Key("labels");
            json.Int(labelSets.numberOf(field.valueLabels));
        }
        json.EndObject();
    }

    // Codes and labels in turn.
    void writeLabelSets()
    {
        json.Key("labelSets");
        json.StartArray();
        for (const QString &set : labelSets.inOrder()) {
            json.StartArray();
            const QVector<ValueLabel> labels = cutValueLabels(set);
            for (const ValueLabel &label : labels) {
                writeText(json, label.code);
                writeText(json, label.label);
            }
            json.EndArray();
        }
        json.EndArray();
    }

    void writeGroups()
    {
        const QVector<RecordType> records = recordTypesOf(layout);
        json.Key("groups");
        json.StartArray();
        if (isOfOneRecord(records))
            writeGroup(records.first().name, QString());
        else
            writeGroupsAnd(records);
        json.EndArray();
    }

    // Where all records are alike, no variable has a group, and the only record has them all.
    bool isOfOneRecord(const QVector<RecordType> &records) const
    {
        return !layout.importer->isMultiple() && records.size() == 1 && groups.inOrder() == QStringList(QString());
    }

    // The groups of the variables in their order, then the records that have none.
    void writeGroupsAnd(const QVector<RecordType> &records)
    {
        KeyedMap<QString, QStringList> types;
        for (const RecordType &record : records) {
            groups.numberOf(record.name);
            types[record.name].append(record.value);
        }
        for (const QString &name : groups.inOrder())
            writeGroup(name, types[name].join(QStringLiteral(", ")));
    }

    void writeGroup(const QString &name, const QString &type)
    {
        json.StartObject();
        json.Key("name");
        writeText(json, name);
        writeSome(json, "type", type);
        json.EndObject();
    }

    void writeKinds()
    {
        json.Key("kinds");
        json.StartArray();
        for (int i = 0; i < ReadReport::kinds; ++i) {
            const auto kind = NoteKind(i);
            if (report.count(kind) == 0)
                continue;
            kindNumbers[size_t(i)] = kindCount++;
            json.StartObject();
            json.Key("id");
            writeText(json, ReadReport::idOf(kind));
            json.Key("gravity");
            writeText(json, ReadReport::nameOf(ReadReport::gravityOf(kind)));
            json.Key("sentence");
            writeText(json, ReadReport::sentenceOf(kind));
            writeSome(json, "count", report.count(kind));
            json.EndObject();
        }
        json.EndArray();
    }

    // Kind, line, variable and text of each.
    void writeNotes()
    {
        const auto &notes = report.notes();
        const auto end = notes.begin() + std::min(qint64(notes.size()), qint64(mostCodebookNotes));
        json.Key("notes");
        json.StartArray();
        for (auto note = notes.begin(); note != end; ++note) {
            json.StartArray();
            json.Int(kindNumbers[size_t(note->kind)]);
            json.Int(note->line);
            writeText(json, note->variable);
            writeText(json, note->text);
            json.EndArray();
        }
        json.EndArray();
    }

    Json &json;
    const Layout &layout;
    const ReadReport &report;
    const QList<TVpSourceField *> &fields;
    Numbering groups;
    Numbering labelSets;
    std::array<int, ReadReport::kinds> kindNumbers = {};
    int kindCount = 0;
};

} // namespace

void writeCodebookData(QIODevice &device, const Layout &layout, const ReadReport &report)
{
    DeviceStream stream(device);
    Json json(stream);
    DataWriter(json, layout, report).write();
    stream.Flush();
}
