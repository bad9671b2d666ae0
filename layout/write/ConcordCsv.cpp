#include "write/ConcordCsv.h"

#include "compare/RoundNames.h"
#include "write/ConcordTexts_p.h"
#include "write/CsvStream_p.h"

namespace vanlayout
{

namespace
{

/// Writes both tables of a concordance.
class ConcordTables
{
public:
    ConcordTables(const Concordance &source, QIODevice &device, const ConcordCsvOptions &options)
        : concordance(source)
        , csv(device, options.isForSpreadsheets ? CsvStream::Reader::Spreadsheet : CsvStream::Reader::Program)
        , rounds(roundNames(source.rounds))
        , names(namesOf(source.variables))
    {
    }

    bool writeVariables()
    {
        add({ QStringLiteral("variable"), QStringLiteral("name"), QStringLiteral("changes") });
        for (const QString &round : qAsConst(rounds)) {
            for (const char *column : { "level ", "record ", "item ", "label ", "changes " })
                add(QLatin1String(column) + round);
        }
        csv.endLine();
        for (int i = 0; i < concordance.variables.size(); ++i)
            writeVariable(i);
        return csv.end();
    }
    bool writeCodes()
    {
        add({ QStringLiteral("variable"), QStringLiteral("name"), QStringLiteral("from"), QStringLiteral("to"),
              QStringLiteral("special"), QStringLiteral("change") });
        add(rounds);
        csv.endLine();
        for (const ConcordCode &code : concordance.codes)
            writeCode(code);
        return csv.end();
    }

private:
    void add(const QString &text) { csv.add(csv.cell(text)); }
    void add(const QStringList &texts)
    {
        for (const QString &text : texts)
            add(text);
    }
    void addName(int variable)
    {
        csv.add(CsvStream::cell(variable));
        add(names.at(variable));
    }

    void writeVariable(int index)
    {
        const ConcordVariable &variable = concordance.variables.at(index);
        addName(index);
        QStringList words = wordsOf(allChangesOf(variable));
        if (isAbsentSomewhere(variable))
            words.append(QStringLiteral("absent"));
        add(words.join(QLatin1Char(' ')));
        for (const std::optional<ConcordCell> &cell : variable.cells) {
            if (cell)
                add({ cell->level, cell->record, cell->item, cell->label,
                      wordsOf(cell->changes).join(QLatin1Char(' ')) });
            else
                csv.add(",,,,,");
        }
        csv.endLine();
    }
    void writeCode(const ConcordCode &code)
    {
        addName(code.variable);
        add({ code.from, code.to, wordOf(code.special), wordOf(code.change) });
        for (const std::optional<QString> &label : code.cells)
            add(label && label->isEmpty() ? QStringLiteral("(no label)") : label.value_or(QString()));
        csv.endLine();
    }

    const Concordance &concordance;
    CsvStream csv;
    QStringList rounds;
    QStringList names; // of the variables
};

} // namespace

bool writeConcordVariablesCsv(const Concordance &concordance, QIODevice &device, const ConcordCsvOptions &options)
{
    return ConcordTables(concordance, device, options).writeVariables();
}

bool writeConcordCodesCsv(const Concordance &concordance, QIODevice &device, const ConcordCsvOptions &options)
{
    return ConcordTables(concordance, device, options).writeCodes();
}

} // namespace vanlayout
