#include "ExportedVariable.h"

#include "LoneSurrogate.h"
#include "util/KeyedHash_p.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace
{

// Names handed out so far, and the next number for each that was wanted again.
class NameGiver
{
public:
    void reserve(const QString &name) { given.insert(name); }

    QString give(const QString &wanted)
    {
        if (given.count(wanted) == 0)
            return remember(wanted);
        int &number = numbers[wanted];
        number = std::max(number, 1);
        QString name;
        do
            name = wanted + QLatin1Char('_') + QString::number(++number);
        while (given.count(name) > 0);
        return remember(name);
    }

private:
    QString remember(const QString &name)
    {
        given.insert(name);
        return name;
    }

    KeyedSet<QString> given;
    KeyedMap<QString, int> numbers;
};

bool isExponential(const QString &code)
{
    return code.contains(QLatin1Char('e'), Qt::CaseInsensitive);
}

bool isStatedExactly(const QString &bound, ValueKind kind)
{
    return kind == ValueKind::whole ? wholeNumberOf(bound).has_value() : realNumberOf(bound).has_value();
}

QString nameOf(const TVpSourceField &field, int index)
{
    return field.fieldName.isEmpty() ? QLatin1Char('V') + QString::number(index + 1) : field.fieldName;
}

} // namespace

bool hasColumns(const Layout &layout)
{
    return layout.importer->getDataProviderType().startsWith(QLatin1String("CSPRO"));
}

QString titleOf(const Layout &layout)
{
    const QFileInfo info(layout.file);
    const QString title = info.completeBaseName();
    return title.isEmpty() ? info.fileName() : title;
}

QString wholeCharacters(const QString &text)
{
    QString whole = text;
    for (int i = nextLoneSurrogate(text, 0); i < text.size(); i = nextLoneSurrogate(text, i + 1))
        whole[i] = QChar::ReplacementCharacter;
    return whole;
}

QStringList missingCodesOf(const TVpSourceField &field)
{
    QStringList codes;
    for (const QString &code : { field.missingValue, field.notApplicable }) {
        if (!code.isEmpty() && !codes.contains(code))
            codes.append(code);
    }
    return codes;
}

QVector<Category> categoriesOf(const TVpSourceField &field)
{
    QStringList unlabelled = missingCodesOf(field);
    QVector<Category> categories;
    const QVector<ValueLabel> entries = cutValueLabels(field.valueLabels);
    for (const ValueLabel &entry : entries) {
        const QString code = entry.code.toString();
        const bool isMissing = !code.isEmpty() && (code == field.missingValue || code == field.notApplicable);
        if (isMissing)
            unlabelled.removeAll(code);
        categories.append({ code, entry.label.toString(), isMissing });
    }
    for (const QString &code : qAsConst(unlabelled)) {
        const bool isNotStated = code == field.missingValue;
        categories.append({ code, isNotStated ? QStringLiteral("Missing") : QStringLiteral("Not applicable"), true });
    }
    return categories;
}

ValueKind kindOf(const TVpSourceField &field)
{
    if (field.FieldType == QLatin1String("INTEGER"))
        return ValueKind::whole;
    if (field.FieldType == QLatin1String("REAL"))
        return ValueKind::real;
    return field.FieldType == QLatin1String("STRING") ? ValueKind::text : ValueKind::unknown;
}

bool isNumber(ValueKind kind)
{
    return kind == ValueKind::whole || kind == ValueKind::real;
}

std::optional<qint64> wholeNumberOf(const QString &code)
{
    bool isWhole = false;
    const qint64 number = code.toLongLong(&isWhole);
    return isWhole ? std::optional<qint64>(number) : std::nullopt;
}

std::optional<double> realNumberOf(const QString &code)
{
    bool isReal = false;
    const double number = code.toDouble(&isReal);
    return isReal && std::isfinite(number) && !isExponential(code) ? std::optional<double>(number) : std::nullopt;
}

Bounds boundsOf(const TVpSourceField &field, ValueKind kind)
{
    if (!isNumber(kind) || (kind == ValueKind::real && field.valueLabels.isEmpty()))
        return {};
    const auto stated = [kind](const QString &bound) { return isStatedExactly(bound, kind) ? bound : QString(); };
    return { stated(field.minimum), stated(field.maximum) };
}

QStringList uniqueNames(const QList<TVpSourceField *> &fields, QString (*spelling)(const QString &name))
{
    QStringList names;
    KeyedMap<QString, int> counts;
    for (int i = 0; i < fields.size(); ++i) {
        names.append(spelling(nameOf(*fields.at(i), i)));
        ++counts[names.last()];
    }
    // A name of one variable alone stays as it is, whatever is made for others.
    NameGiver giver;
    for (const auto &[name, count] : counts) {
        if (count == 1)
            giver.reserve(name);
    }
    for (int i = 0; i < fields.size(); ++i) {
        const TVpSourceField &field = *fields.at(i);
        QString &name = names[i];
        if (counts[name] == 1)
            continue;
        const bool hasGroup = !field.group.isEmpty();
        name = giver.give(hasGroup ? spelling(field.group + QLatin1Char('.') + nameOf(field, i)) : name);
    }
    return names;
}
