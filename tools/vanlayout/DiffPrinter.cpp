#include "DiffPrinter.h"

#include "Columns.h"
#include "Json.h"
#include "Printable.h"
#include "import/SourceField.h"

#include <QStringList>

namespace
{

// The group of the new variable, or where its format has none that of the old one.
const QString &groupOf(const VariableChange &change)
{
    return change.newField->group.isEmpty() ? change.oldField->group : change.newField->group;
}

// What one of two formats does not tell.
QStringList notCompared(const ComparedLayouts &compared)
{
    QStringList names;
    for (const Property *property : allProperties()) {
        if (!compared.properties.contains(property))
            names.append(QLatin1String(property->name));
    }
    return names;
}

class DiffWriter
{
public:
    explicit DiffWriter(std::FILE *file)
        : out(file)
    {
    }

    void printHeading(const ComparedLayouts &compared)
    {
        print(0, QStringLiteral("Old: ") + titleOf(compared.oldLayout));
        print(0, QStringLiteral("New: ") + titleOf(compared.newLayout));
        const QStringList left = notCompared(compared);
        if (!left.isEmpty())
            print(0, QStringLiteral("Not compared between these formats: ") + left.join(QStringLiteral(", ")));
        print(0, QString());
    }

    void printSummary(const LayoutDiff &diff, const RecordsDiff &records)
    {
        if (diff.isEmpty())
            print(0,
                  records.isEmpty() ? QStringLiteral("The layouts are the same")
                                    : QStringLiteral("The variables are the same"));
        else
            print(0,
                  QStringLiteral("%1 added, %2 removed, %3 renamed, %4 changed")
                      .arg(diff.added.size())
                      .arg(diff.removed.size())
                      .arg(diff.renamed.size())
                      .arg(diff.changed.size()));
    }

    void printRecords(const ComparedLayouts &compared, const RecordsDiff &records)
    {
        printCaption(QStringLiteral("Records"), records.isEmpty());
        for (const RecordTypeProperty *property : records.properties)
            print(1,
                  QLatin1String(property->name) + QStringLiteral(": ")
                      + fromTo(QString::number(compared.oldRecords.*property->number),
                               QString::number(compared.newRecords.*property->number)));
        for (const RecordChange &record : records.records)
            print(1, printable(record.code.toString()) + QStringLiteral(": ") + describe(record));
    }

    void printVariables(const QString &caption, const QVector<const TVpSourceField *> &fields)
    {
        printCaption(caption, fields.isEmpty());
        for (const TVpSourceField *field : fields)
            print(1,
                  nameInGroup(printable(field->fieldName), field->group) + QStringLiteral(": ")
                      + quoted(QStringView(field->label)));
    }

    void printChanges(const QString &caption, const QVector<VariableChange> &changes)
    {
        printCaption(caption, changes.isEmpty());
        for (const VariableChange &change : changes)
            printChange(change);
    }

private:
    static QString titleOf(const Layout &layout)
    {
        const int count = layout.provider.getFields()->size();
        return QStringLiteral("%1: %2, %3 %4")
            .arg(printable(layout.file), QLatin1String(layout.type->title), QString::number(count),
                 count == 1 ? QStringLiteral("variable") : QStringLiteral("variables"));
    }

    // Quotes show what else cannot be seen: an empty text, a blank at an end.
    static QString quoted(QStringView text) { return QLatin1Char('"') + printable(text.toString()) + QLatin1Char('"'); }

    static QString fromTo(const QString &from, const QString &to)
    {
        constexpr QChar arrow(0x2192);
        return from + QLatin1Char(' ') + arrow + QLatin1Char(' ') + to;
    }

    static QString nameInGroup(const QString &name, const QString &group)
    {
        return group.isEmpty() ? name : name + QStringLiteral(" (") + printable(group) + QLatin1Char(')');
    }

    static QString valueOf(const Property &property, const TVpSourceField &field)
    {
        return property.text ? quoted(QStringView(field.*property.text)) : QString::number(field.*property.number);
    }

    static QString describe(const ValueLabelChange &change)
    {
        if (!change.oldLabel)
            return QStringLiteral("added ") + quoted(*change.newLabel);
        if (!change.newLabel)
            return QStringLiteral("removed ") + quoted(*change.oldLabel);
        return fromTo(quoted(*change.oldLabel), quoted(*change.newLabel));
    }

    void printCaption(const QString &caption, bool isEmpty)
    {
        if (isEmpty)
            return;
        print(0, QString());
        print(0, caption);
    }

    void printChange(const VariableChange &change)
    {
        const QString oldName = printable(change.oldField->fieldName);
        const QString newName = printable(change.newField->fieldName);
        const bool isRenamed = change.oldField->fieldName != change.newField->fieldName;
        print(1, nameInGroup(isRenamed ? fromTo(oldName, newName) : newName, groupOf(change)));
        for (const Property *property : change.properties)
            print(2,
                  QLatin1String(property->name) + QStringLiteral(": ")
                      + fromTo(valueOf(*property, *change.oldField), valueOf(*property, *change.newField)));
        if (!change.valueLabels.isEmpty())
            print(2, QStringLiteral("value labels:"));
        for (const ValueLabelChange &label : change.valueLabels)
            print(3, printable(label.code.toString()) + QStringLiteral(": ") + describe(label));
    }

    void print(int depth, const QString &line)
    {
        constexpr int indentation = 2;
        printLine(out, QString(depth * indentation, QLatin1Char(' ')) + line);
    }

    std::FILE *out;
};

// The one order of keys.
template <typename Writer> class DiffJsonWriter
{
public:
    explicit DiffJsonWriter(Writer &jsonWriter)
        : json(jsonWriter)
    {
    }

    void writeDiff(const ComparedLayouts &compared, const LayoutDiff &diff, const RecordsDiff &records)
    {
        json.StartObject();
        writeSource("old", compared.oldLayout);
        writeSource("new", compared.newLayout);
        writeArray("notCompared", notCompared(compared), [this](const QString &name) { writeJson(json, name); });
        writeArray("recordType", records.properties, [&](const RecordTypeProperty *property) {
            json.StartObject();
            writeJson(json, "property", QString::fromLatin1(property->name));
            writeJson(json, "old", compared.oldRecords.*property->number);
            writeJson(json, "new", compared.newRecords.*property->number);
            json.EndObject();
        });
        writeArray("records", records.records,
                   [this](const RecordChange &record) { writeLabelChange("name", record); });
        writeArray("added", diff.added, [this](const TVpSourceField *field) { writeVariable(*field); });
        writeArray("removed", diff.removed, [this](const TVpSourceField *field) { writeVariable(*field); });
        writeArray("renamed", diff.renamed, [this](const VariableChange &change) { writeRenamed(change); });
        writeArray("changed", diff.changed, [this](const VariableChange &change) { writeChanged(change); });
        json.EndObject();
    }

private:
    template <typename Items, typename Write> void writeArray(const char *key, const Items &items, Write write)
    {
        json.Key(key);
        json.StartArray();
        for (const auto &item : items)
            write(item);
        json.EndArray();
    }

    void writeSource(const char *key, const Layout &layout)
    {
        json.Key(key);
        json.StartObject();
        writeJson(json, "file", layout.file);
        writeJson(json, "type", QString::fromLatin1(layout.type->name));
        json.EndObject();
    }

    void writeVariable(const TVpSourceField &field)
    {
        json.StartObject();
        writeJson(json, "name", field.fieldName);
        writeJson(json, "group", field.group);
        writeJson(json, "label", field.label);
        json.EndObject();
    }

    void writeRenamed(const VariableChange &change)
    {
        json.StartObject();
        writeJson(json, "from", change.oldField->fieldName);
        writeJson(json, "to", change.newField->fieldName);
        writeDifferences(change);
        json.EndObject();
    }

    void writeChanged(const VariableChange &change)
    {
        json.StartObject();
        writeJson(json, "name", change.newField->fieldName);
        writeDifferences(change);
        json.EndObject();
    }

    void writeDifferences(const VariableChange &change)
    {
        writeJson(json, "group", groupOf(change));
        writeArray("properties", change.properties, [&](const Property *property) {
            json.StartObject();
            writeJson(json, "property", QString::fromLatin1(property->name));
            writeValue("old", *property, *change.oldField);
            writeValue("new", *property, *change.newField);
            json.EndObject();
        });
        writeArray("valueLabels", change.valueLabels,
                   [this](const ValueLabelChange &label) { writeLabelChange("code", label); });
    }

    void writeLabelChange(const char *key, const ValueLabelChange &change)
    {
        json.StartObject();
        writeJson(json, key, change.code);
        writeLabel("old", change.oldLabel);
        writeLabel("new", change.newLabel);
        json.EndObject();
    }

    void writeValue(const char *key, const Property &property, const TVpSourceField &field)
    {
        if (property.text)
            writeJson(json, key, field.*property.text);
        else
            writeJson(json, key, field.*property.number);
    }

    void writeLabel(const char *key, const std::optional<QStringRef> &label)
    {
        json.Key(key);
        if (label)
            writeJson(json, *label);
        else
            json.Null();
    }

    Writer &json;
};

} // namespace

void printDiffAsTable(std::FILE *out, const ComparedLayouts &compared, const LayoutDiff &diff,
                      const RecordsDiff &records)
{
    DiffWriter writer(out);
    writer.printHeading(compared);
    writer.printSummary(diff, records);
    writer.printRecords(compared, records);
    writer.printVariables(QStringLiteral("Added"), diff.added);
    writer.printVariables(QStringLiteral("Removed"), diff.removed);
    writer.printChanges(QStringLiteral("Renamed"), diff.renamed);
    writer.printChanges(QStringLiteral("Changed"), diff.changed);
}

void printDiffAsJson(std::FILE *out, const ComparedLayouts &compared, const LayoutDiff &diff,
                     const RecordsDiff &records)
{
    printJson(out, false, [&](auto &json) { DiffJsonWriter(json).writeDiff(compared, diff, records); });
}
