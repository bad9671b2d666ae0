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
        line = hasFileColumn ? "file," : "";
        line += "name,label,type,length,start,decimals,minimum,maximum,notApplicable,missing,group,providerType,"
                "valueLabelText,";
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
        if (text.isEmpty()) {
            line += ',';
            return;
        }
        QByteArray cell = text.toUtf8();
        const auto isSpecial = [](char c) { return c == ',' || c == '"' || c == '\n' || c == '\r'; };
        const bool needsQuotes = std::any_of(cell.cbegin(), cell.cend(), isSpecial);
        if (needsQuotes)
            cell = '"' + cell.replace('"', "\"\"") + '"';
        line += cell;
        line += ',';
    }

    void addNumber(int number)
    {
        line += QByteArray::number(number);
        line += ',';
    }

    // Every cell has put a comma behind itself; the last one goes.
    void endLine()
    {
        line.chop(1);
        line += "\r\n";
        std::fwrite(line.constData(), 1, size_t(line.size()), out);
        line.resize(0);
    }

    std::FILE *out;
    bool hasFileColumn;
    bool headerIsPrinted = false;
    QByteArray line;
};

} // namespace

std::unique_ptr<Printer> makeCsvPrinter(std::FILE *out, bool severalFiles)
{
    return std::make_unique<CsvPrinter>(out, severalFiles);
}
