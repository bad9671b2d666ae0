#include "Json.h"
#include "Printer.h"

#include "import/SourceField.h"

using vanlayout::JsonStyle;

namespace
{

// The order of keys, for the indented and the one-line form.
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

    // A file that the system fails to read causes no error of the library: it only has a cause.
    void writeError(const Layout &layout)
    {
        json.StartObject();
        json.Key("error");
        json.StartObject();
        if (layout.error) {
            write("code", layout.error->getCode());
            // The text of the error is the single character whose code is the line index.
            const QString text = layout.error->getText();
            write("line", text.isEmpty() ? 0 : text.at(0).unicode());
        }
        write("cause", layout.problem);
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
        const QVector<ValueLabel> labels = cutValueLabels(field.valueLabels);
        for (const ValueLabel &label : labels) {
            json.StartObject();
            write("code", label.code);
            write("label", label.label);
            json.EndObject();
        }
        json.EndArray();
        json.EndObject();
    }

    template <typename Value> void write(const char *key, const Value &value) { writeJson(json, key, value); }

    Writer &json;
};

class JsonPrinter : public Printer
{
public:
    JsonPrinter(std::FILE *file, FileCount files)
        : out(file)
        , style(files == FileCount::several ? JsonStyle::Compact : JsonStyle::Pretty)
    {
    }

    void printLayout(const Layout &layout) override
    {
        printJson(out, style, [&](auto &json) { LayoutWriter(json).writeLayout(layout); });
    }

    void printProblem(const Layout &layout) override
    {
        if (layout.error || (layout.importer && !layout.importer->getReadProblem().isEmpty()))
            printJson(out, style, [&](auto &json) { LayoutWriter(json).writeError(layout); });
    }

private:
    std::FILE *out;
    JsonStyle style;
};

} // namespace

std::unique_ptr<Printer> makeJsonPrinter(std::FILE *out, FileCount files)
{
    return std::make_unique<JsonPrinter>(out, files);
}
