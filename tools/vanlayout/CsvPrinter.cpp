#include "Printer.h"

#include "import/SourceField.h"

#include <algorithm>

namespace
{

class CsvPrinter : public Printer
{
public:
    CsvPrinter(std::FILE *stream, bool withFileColumn)
        : out(stream)
        , hasFileColumn(withFileColumn)
    {
        line.reserve(usualLineSize); // kept from line to line
    }

    void printLayout(const Layout &layout) override
    {
        printHeader();
        for (const TVpSourceField *field : *layout.provider.getFields()) {
            if (hasFileColumn)
                addText(layout.file);
            addField(*field);
            endLine();
        }
    }

private:
    void printHeader()
    {
        if (headerIsPrinted)
            return;
        headerIsPrinted = true;
        if (hasFileColumn)
            line += QLatin1String("file,");
        line += QLatin1String(
            "name,label,type,length,start,decimals,minimum,maximum,notApplicable,missing,group,providerType,"
            "valueLabelText,");
        endLine();
    }

    void addField(const TVpSourceField &field)
    {
        addText(field.fieldName);
        addText(field.label);
        addText(field.FieldType);
        addNumber(field.length);
        addNumber(field.start);
        addNumber(field.decimals);
        addText(field.minimum);
        addText(field.maximum);
        addText(field.notApplicable);
        addText(field.missingValue);
        addText(field.group);
        addText(field.DataProviderType);
        addText(field.valueLabels);
    }

    void addText(const QString &text)
    {
        if (needsQuotes(text))
            line
                += QLatin1Char('"') + QString(text).replace(QLatin1Char('"'), QLatin1String("\"\"")) + QLatin1Char('"');
        else
            line += text;
        line += QLatin1Char(',');
    }

    static bool needsQuotes(const QString &text)
    {
        return std::any_of(text.cbegin(), text.cend(), [](QChar character) {
            const ushort code = character.unicode();
            return code == ',' || code == '"' || code == '\n' || code == '\r';
        });
    }

    void addNumber(int number)
    {
        line += QString::number(number);
        line += QLatin1Char(',');
    }

    // Every cell has put a comma behind itself; the last one goes.
    void endLine()
    {
        line.chop(1);
        line += QLatin1String("\r\n");
        const QByteArray bytes = line.toUtf8();
        std::fwrite(bytes.constData(), 1, size_t(bytes.size()), out);
        line.resize(0);
    }

    static constexpr int usualLineSize = 4096;

    std::FILE *out;
    bool hasFileColumn;
    bool headerIsPrinted = false;
    QString line;
};

} // namespace

std::unique_ptr<Printer> makeCsvPrinter(std::FILE *out, bool severalFiles)
{
    return std::make_unique<CsvPrinter>(out, severalFiles);
}
