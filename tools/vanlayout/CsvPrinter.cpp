#include "CsvLine.h"
#include "Printer.h"

#include "import/SourceField.h"

namespace
{

class CsvPrinter : public Printer
{
public:
    CsvPrinter(std::FILE *stream, FileCount files)
        : line(stream)
        , hasFileColumn(files == FileCount::several)
    {
    }

    void printLayout(const Layout &layout) override
    {
        printHeader();
        for (const TVpSourceField *field : *layout.provider.getFields()) {
            if (hasFileColumn)
                line.add(layout.file);
            addField(*field);
            line.end();
        }
    }

private:
    void printHeader()
    {
        if (headerIsPrinted)
            return;
        headerIsPrinted = true;
        if (hasFileColumn)
            line.addPlain(QLatin1String("file"));
        line.addPlain(QLatin1String(
            "name,label,type,length,start,decimals,minimum,maximum,notApplicable,missing,group,providerType,"
            "valueLabelText"));
        line.end();
    }

    void addField(const TVpSourceField &field)
    {
        line.add(field.fieldName);
        line.add(field.label);
        line.add(field.FieldType);
        line.add(field.length);
        line.add(field.start);
        line.add(field.decimals);
        line.add(field.minimum);
        line.add(field.maximum);
        line.add(field.notApplicable);
        line.add(field.missingValue);
        line.add(field.group);
        line.add(field.DataProviderType);
        line.add(field.valueLabels);
    }

    CsvLine line;
    bool hasFileColumn;
    bool headerIsPrinted = false;
};

} // namespace

std::unique_ptr<Printer> makeCsvPrinter(std::FILE *out, FileCount files)
{
    return std::make_unique<CsvPrinter>(out, files);
}
