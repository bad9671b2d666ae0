#include "write/Recodeflow.h"

#include "write/ConcordTexts_p.h"
#include "write/CsvStream_p.h"
#include "write/RecodePlan_p.h"

#include <QFileInfo>

#include <algorithm>

namespace vanlayout
{

namespace
{

const QString &notApplicable()
{
    static const QString text = QStringLiteral("N/A");
    return text;
}

bool isAsciiWord(QChar unit)
{
    return (unit >= QLatin1Char('a') && unit <= QLatin1Char('z'))
        || (unit >= QLatin1Char('A') && unit <= QLatin1Char('Z'))
        || (unit >= QLatin1Char('0') && unit <= QLatin1Char('9')) || unit == QLatin1Char('_');
}

// A name of R: ASCII letters, digits and `_`. A letter precedes a name that does not begin with one.
QString nameInR(const QString &name, char letter)
{
    QString word = name;
    std::replace_if(
        word.begin(), word.end(), [](QChar unit) { return !isAsciiWord(unit); }, QLatin1Char('_'));
    const bool beginsWithLetter = !word.isEmpty() && word.at(0).isLetter();
    return beginsWithLetter ? word : QLatin1Char(letter) + word;
}

bool containsAnother(const QStringList &names)
{
    for (int i = 0; i < names.size(); ++i) {
        for (int j = 0; j < names.size(); ++j) {
            if (i != j && names.at(j).contains(names.at(i)))
                return true;
        }
    }
    return false;
}

bool isReadable(const QString &name)
{
    static const QString signs = QStringLiteral(",:[]");
    return !name.isEmpty() && name == name.trimmed()
        && std::none_of(name.begin(), name.end(), [](QChar unit) { return signs.contains(unit); });
}

bool isReadable(const ConcordVariable &variable)
{
    return std::all_of(variable.cells.begin(), variable.cells.end(),
                       [](const std::optional<ConcordCell> &cell) { return !cell || isReadable(cell->item); });
}

QString endOf(const RecodeRule &rule)
{
    switch (rule.kind) {
    case RecodeKind::Category:
        return rule.end;
    case RecodeKind::Copy:
        return QStringLiteral("copy");
    case RecodeKind::Missing:
        return QStringLiteral("NA::b");
    case RecodeKind::NotApplicable:
        return QStringLiteral("NA::a");
    }
    return QString();
}

/// Writes both tables.
class RecodeflowWriter
{
public:
    RecodeflowWriter(const Concordance &source, const QVector<Layout> &layouts, QIODevice &device)
        : concordance(source)
        , csv(device, CsvStream::Reader::Program)
        , databases(recodeflowDatabases(source.rounds))
        , plan(source, layouts, databases)
    {
        UniqueNames unique;
        const QStringList ofVariables = namesOf(source.variables);
        for (const QString &name : ofVariables)
            names.append(unique.give(nameInR(name, 'v')));
    }

    bool writeDetails()
    {
        addLine({ QStringLiteral("variable"), QStringLiteral("dummyVariable"), QStringLiteral("typeEnd"),
                  QStringLiteral("databaseStart"), QStringLiteral("variableStart"), QStringLiteral("typeStart"),
                  QStringLiteral("recEnd"), QStringLiteral("numValidCat"), QStringLiteral("catLabel"),
                  QStringLiteral("catLabelLong"), QStringLiteral("units"), QStringLiteral("recStart"),
                  QStringLiteral("catStartLabel"), QStringLiteral("variableStartShortLabel"),
                  QStringLiteral("variableStartLabel"), QStringLiteral("notes") });
        return writeEach([this](const QString &name, const RecodeVariable &planned) {
            for (const RecodeRule &rule : planned.rules)
                writeRule(name, planned, rule);
        });
    }
    bool writeVariables()
    {
        addLine({ QStringLiteral("variable"), QStringLiteral("role"), QStringLiteral("label"),
                  QStringLiteral("labelLong"), QStringLiteral("section"), QStringLiteral("subject"),
                  QStringLiteral("variableType"), QStringLiteral("databaseStart"), QStringLiteral("units"),
                  QStringLiteral("variableStart"), QStringLiteral("description") });
        return writeEach([this](const QString &name, const RecodeVariable &planned) {
            const ConcordCell &last = lastCellOf(planned);
            addLine({ name, QString(), last.label, last.label, last.record, QString(),
                      planned.isCategorical ? QStringLiteral("Categorical") : QStringLiteral("Continuous"),
                      databasesOf(planned.rounds), notApplicable(), startsOf(planned, planned.rounds), QString() });
        });
    }

private:
    void addLine(const QStringList &cells)
    {
        for (const QString &cell : cells)
            csv.add(csv.cell(cell));
        csv.endLine();
    }
    template <typename WriteOne> bool writeEach(WriteOne writeOne)
    {
        for (int i = 0; i < concordance.variables.size(); ++i) {
            const RecodeVariable planned = plan.next(i);
            if (!planned.rounds.isEmpty() && isReadable(*planned.variable))
                writeOne(names.at(i), planned);
        }
        return csv.end();
    }

    // The labels of the latest round describe the result.
    static const ConcordCell &lastCellOf(const RecodeVariable &planned)
    {
        return *planned.variable->cells.at(planned.rounds.constLast());
    }
    QString databasesOf(const QVector<int> &rounds) const
    {
        QStringList list;
        for (const int round : rounds)
            list.append(databases.at(round));
        return list.join(QLatin1String(", "));
    }
    // `[P309]` if all rounds have one name, else `r2001::P309, r2006::P310`.
    QString startsOf(const RecodeVariable &planned, const QVector<int> &rounds) const
    {
        const auto itemIn = [&](int round) -> const QString & { return planned.variable->cells.at(round)->item; };
        const QString &name = itemIn(rounds.constFirst());
        if (std::all_of(rounds.begin(), rounds.end(), [&](int round) { return itemIn(round) == name; }))
            return QLatin1Char('[') + name + QLatin1Char(']');
        QStringList list;
        for (const int round : rounds)
            list.append(databases.at(round) + QLatin1String("::") + itemIn(round));
        return list.join(QLatin1String(", "));
    }

    void writeRule(const QString &name, const RecodeVariable &planned, const RecodeRule &rule)
    {
        const QString type = planned.isCategorical ? QStringLiteral("cat") : QStringLiteral("cont");
        const bool hasCategories = planned.isCategorical && planned.categories > 0;
        const QString count = hasCategories ? QString::number(planned.categories) : notApplicable();
        const QString dummy
            = hasCategories ? name + QLatin1String("_cat") + count + QLatin1Char('_') + endOf(rule) : notApplicable();
        const QString label = rule.kind == RecodeKind::Copy ? notApplicable() : rule.label;
        const QString startLabel = rule.label.isEmpty() ? notApplicable() : rule.label;
        const ConcordCell &first = *planned.variable->cells.at(rule.rounds.constFirst());
        addLine({ name, dummy, type, databasesOf(rule.rounds), startsOf(planned, rule.rounds), type, endOf(rule), count,
                  label, label, notApplicable(), rule.start, startLabel, first.label, first.label, rule.note });
    }

    const Concordance &concordance;
    CsvStream csv;
    QStringList databases;
    RecodePlan plan;
    QStringList names; // of the results
};

} // namespace

bool writeRecodeflowDetails(const Concordance &concordance, const QVector<Layout> &rounds, QIODevice &device)
{
    return RecodeflowWriter(concordance, rounds, device).writeDetails();
}

bool writeRecodeflowVariables(const Concordance &concordance, const QVector<Layout> &rounds, QIODevice &device)
{
    return RecodeflowWriter(concordance, rounds, device).writeVariables();
}

QStringList recodeflowDatabases(const QStringList &files)
{
    QStringList stems;
    QStringList numbered;
    QStringList numbers;
    for (int i = 0; i < files.size(); ++i) {
        const int digits = int(QString::number(files.size()).size());
        const QString number = QLatin1Char('_') + QString::number(i + 1).rightJustified(digits, QLatin1Char('0'));
        stems.append(nameInR(QFileInfo(files.at(i)).completeBaseName(), 'r'));
        numbered.append(stems.constLast() + number);
        numbers.append(QLatin1String("round") + number);
    }
    if (!containsAnother(stems))
        return stems;
    return containsAnother(numbered) ? numbers : numbered;
}

QStringList recodeflowOmitted(const Concordance &concordance)
{
    QStringList names;
    for (const ConcordVariable &variable : concordance.variables) {
        for (const std::optional<ConcordCell> &cell : variable.cells) {
            if (cell && !isReadable(cell->item))
                names.append(cell->item);
        }
    }
    names.removeDuplicates();
    return names;
}

} // namespace vanlayout
