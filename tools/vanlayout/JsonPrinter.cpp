#include "Printer.h"

#include "import/SourceField.h"

#include <rapidjson/filewritestream.h>
#include <rapidjson/prettywriter.h>

#include <algorithm>

namespace
{

constexpr unsigned indentation = 2;

// Half of a surrogate pair can stand in a name, as an occurrence's suffix. UTF-8 cannot hold it; an escape can.
bool hasLoneSurrogate(QStringView text)
{
    for (const QChar *unit = text.begin(); unit != text.end(); ++unit) {
        if (unit->isHighSurrogate() && unit + 1 != text.end() && unit[1].isLowSurrogate())
            ++unit;
        else if (unit->isSurrogate())
            return true;
    }
    return false;
}

QByteArray escaped(QStringView text)
{
    QByteArray literal(1, '"');
    for (const QChar unit : text) {
        literal += "\\u";
        literal += QByteArray::number(unit.unicode(), 16).rightJustified(4, '0');
    }
    return literal + '"';
}

// The one order of keys, for both the form of a person and the form of a line.
template <typename Writer> class LayoutWriter
{
public:
    explicit LayoutWriter(Writer &jsonWriter)
        : json(jsonWriter)
    {
    }

    void writeLayout(const Layout &layout)
    {
        json.StartObject();
        writeImporter(*layout.importer);
        writeProvider(layout.provider);
        json.Key("fields");
        json.StartArray();
        for (const TVpSourceField *field : *layout.provider.getFields())
            writeField(*field);
        json.EndArray();
        json.EndObject();
    }

    void writeError(const VpErrorManager &error)
    {
        json.StartObject();
        json.Key("error");
        json.StartObject();
        write("code", error.getCode());
        // The text of the error is the one character whose code is the line index.
        const QString text = error.getText();
        write("line", text.isEmpty() ? 0 : text.at(0).unicode());
        json.EndObject();
        json.EndObject();
    }

private:
    void writeImporter(TDataImport &importer)
    {
        json.Key("importer");
        json.StartObject();
        write("type", importer.getDataProviderType());
        write("id", importer.getDataProviderId());
        json.Key("multiple");
        json.Bool(importer.isMultiple());
        json.Key("groups");
        json.StartArray();
        const int count = importer.getGroupCount();
        for (int i = 0; i < count; ++i) {
            json.StartObject();
            write("name", importer.getGroupName(i));
            write("value", importer.getGroupValue(i));
            json.EndObject();
        }
        json.EndArray();
        json.EndObject();
    }

    void writeProvider(const TVpDataProvider &provider)
    {
        json.Key("provider");
        json.StartObject();
        write("id", provider.getDataProviderId());
        write("type", provider.getDataProviderType());
        write("layoutFile", provider.getLayoutFileName());
        write("dataFile", provider.getDataFileName());
        write("recordTypeStart", provider.getRecordTypeStart());
        write("recordTypeSize", provider.getRecordTypeSize());
        json.EndObject();
    }

    void writeField(const TVpSourceField &field)
    {
        json.StartObject();
        write("name", field.fieldName);
        write("label", field.label);
        write("type", field.FieldType);
        write("length", field.length);
        write("start", field.start);
        write("decimals", field.decimals);
        write("minimum", field.minimum);
        write("maximum", field.maximum);
        write("notApplicable", field.notApplicable);
        write("missing", field.missingValue);
        write("group", field.group);
        write("providerType", field.DataProviderType);
        write("valueLabelText", field.valueLabels);
        json.Key("valueLabels");
        json.StartArray();
        for (const ValueLabel &label : cutValueLabels(field.valueLabels)) {
            json.StartObject();
            write("code", label.code);
            write("label", label.label);
            json.EndObject();
        }
        json.EndArray();
        json.EndObject();
    }

    void write(const char *key, QStringView text)
    {
        json.Key(key);
        if (hasLoneSurrogate(text)) {
            const QByteArray literal = escaped(text);
            json.RawValue(literal.constData(), size_t(literal.size()), rapidjson::kStringType);
        } else {
            const QByteArray utf8 = text.toUtf8();
            json.String(utf8.constData(), rapidjson::SizeType(utf8.size()));
        }
    }

    void write(const char *key, int number)
    {
        json.Key(key);
        json.Int(number);
    }

    Writer &json;
};

class JsonPrinter : public Printer
{
public:
    JsonPrinter(std::FILE *file, bool oneObjectALine)
        : out(file)
        , isCompact(oneObjectALine)
    {
    }

    void printLayout(const Layout &layout) override
    {
        print([&layout](auto &writer) { writer.writeLayout(layout); });
    }

    void printProblem(const Layout &layout) override
    {
        if (layout.error)
            print([&layout](auto &writer) { writer.writeError(*layout.error); });
    }

private:
    template <typename Work> void print(Work work)
    {
        char buffer[1 << 16];
        rapidjson::FileWriteStream stream(out, buffer, sizeof buffer);
        if (isCompact) {
            rapidjson::Writer<rapidjson::FileWriteStream> json(stream);
            LayoutWriter<decltype(json)> writer(json);
            work(writer);
        } else {
            rapidjson::PrettyWriter<rapidjson::FileWriteStream> json(stream);
            json.SetIndent(' ', indentation);
            LayoutWriter<decltype(json)> writer(json);
            work(writer);
        }
        stream.Put('\n');
        stream.Flush();
    }

    std::FILE *out;
    bool isCompact;
};

} // namespace

std::unique_ptr<Printer> makeJsonPrinter(std::FILE *out, bool severalFiles)
{
    return std::make_unique<JsonPrinter>(out, severalFiles);
}
