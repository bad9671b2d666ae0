#include "cspro/CSProJsonNotes_p.h"

#include "cspro/CSProJsonRules_p.h"
#include "cspro/CSProModel_p.h"
#include "import/ReadReport.h"
#include "util/NumbersSoFar_p.h"
#include "util/KeyedHash_p.h"
#include "util/Numbers_p.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <iterator>

namespace cspro
{

namespace
{

enum JsonType { textType, integerType, numberType, flagType, arrayType, objectType, anyType };

struct JsonKey {
    const char *name;
    JsonType type;
};

// The keys of each object: those that are read, with their types, and those that no layout has a place for.
constexpr JsonKey wrapperKeys[]
    = { { "dictionary", objectType }, { "software", anyType }, { "fileType", anyType }, { "editable", anyType } };
constexpr JsonKey dictionaryKeys[] = { { "name", textType },
                                       { "version", numberType },
                                       { "recordType", objectType },
                                       { "relativePositions", flagType },
                                       { "defaults", objectType },
                                       { "levels", arrayType },
                                       { "labels", anyType },
                                       { "languages", anyType },
                                       { "software", anyType },
                                       { "fileType", anyType },
                                       { "editable", anyType },
                                       { "security", anyType },
                                       { "readOptimization", anyType },
                                       { "enableBinaryItems", anyType } };
constexpr JsonKey recordTypeKeys[] = { { "start", integerType }, { "length", integerType } };
constexpr JsonKey defaultsKeys[] = { { "decimalMark", flagType }, { "zeroFill", flagType } };
constexpr JsonKey levelKeys[]
    = { { "name", anyType }, { "labels", anyType }, { "ids", objectType }, { "records", arrayType } };
constexpr JsonKey idsKeys[] = { { "items", arrayType } };
constexpr JsonKey recordKeys[] = { { "name", textType },
                                   { "labels", arrayType },
                                   { "recordType", textType },
                                   { "occurrences", objectType },
                                   { "items", arrayType } };
constexpr JsonKey occurrencesKeys[] = { { "maximum", integerType }, { "required", flagType } };
constexpr JsonKey itemKeys[]
    = { { "name", textType },      { "labels", arrayType },       { "contentType", textType },
        { "length", integerType }, { "start", integerType },      { "decimalMark", flagType },
        { "zeroFill", flagType },  { "occurrences", objectType }, { "valueSets", arrayType },
        { "decimals", anyType },   { "subitem", anyType },        { "subitemOffset", anyType } };
enum class ItemKey { // in the order of the keys above
    name,
    labels,
    contentType,
    length,
    start,
    decimalMark,
    zeroFill,
    occurrences,
    valueSets,
    decimals,
    subitem,
    subitemOffset
};
static_assert(std::size(itemKeys) == size_t(ItemKey::subitemOffset) + 1);
constexpr JsonKey valueSetKeys[] = { { "name", textType }, { "labels", arrayType }, { "values", arrayType } };
constexpr JsonKey valueKeys[] = { { "labels", arrayType }, { "pairs", arrayType }, { "special", anyType } };
constexpr JsonKey pairKeys[] = { { "value", textType }, { "range", arrayType } };

bool isInteger(const QJsonValue &value)
{
    constexpr int no = 1;
    constexpr int other = 2;
    return value.isDouble() && (value.toInt(no) != no || value.toInt(other) != other);
}

bool hasType(const QJsonValue &value, JsonType type)
{
    switch (type) {
    case textType:
        return value.isString();
    case integerType:
        return isInteger(value);
    case numberType:
        return value.isDouble();
    case flagType:
        return value.isBool();
    case arrayType:
        return value.isArray();
    case objectType:
        return value.isObject();
    default:
        return true;
    }
}

// A key with the beginning of its value, as JSON.
QString textOf(const QString &key, const QJsonValue &value)
{
    constexpr int maxCharacters = 80;
    QJsonObject pair;
    pair.insert(key, value);
    QString text = QString::fromUtf8(QJsonDocument(pair).toJson(QJsonDocument::Compact)).mid(1);
    text.chop(1);
    return text.left(maxCharacters);
}

/// One walk over a document, in the order of the reader. Adds the notes to a report.
class DocumentWalk
{
public:
    explicit DocumentWalk(ReadReport &usedReport)
        : report(usedReport)
    {
    }

    void overDocument(const QJsonObject &root)
    {
        if (root.value(QLatin1String("dictionary")).isObject())
            overKeys(root, wrapperKeys);
        overDictionary(dictionaryOf(root));
    }

private:
    void overDictionary(const QJsonObject &dictionary)
    {
        overKeys(dictionary, dictionaryKeys);
        need(dictionary, { "recordType", "levels" });
        const QJsonObject recordType = objectOf(dictionary, "recordType");
        overKeys(recordType, recordTypeKeys);
        hasRecordTypes = recordType.value(QLatin1String("length")).toInt() > 0;
        isColumnOneTaken = hasRecordTypes;
        overKeys(objectOf(dictionary, "defaults"), defaultsKeys);
        const QJsonArray levels = arrayOf(dictionary, "levels");
        forEachObject(levels, [this](const QJsonObject &level) { overLevelHead(level); });
        forEachObject(levels, [this](const QJsonObject &level) {
            const QJsonArray records = arrayOf(level, "records");
            forEachObject(records, [this](const QJsonObject &record) { overRecord(record); });
        });
    }

    enum class CodeForm { value, range };

    template <size_t count> using Values = std::array<QJsonValue, count>;

    static QJsonObject objectOf(const QJsonObject &parent, const char *key)
    {
        return parent.value(QLatin1String(key)).toObject();
    }
    static QJsonArray arrayOf(const QJsonObject &parent, const char *key)
    {
        return parent.value(QLatin1String(key)).toArray();
    }

    void note(NoteKind kind, const QString &text) { report.add(kind, text, 0, variable); }

    // Adds notes on values of wrong types and on unknown keys. Returns the values of the keys in their order; undefined
    // for a key that the object lacks.
    template <size_t count> Values<count> overKeys(const QJsonObject &object, const JsonKey (&keys)[count])
    {
        Values<count> values;
        values.fill(QJsonValue(QJsonValue::Undefined));
        for (auto entry = object.constBegin(); entry != object.constEnd(); ++entry) {
            const QString name = entry.key();
            QJsonValue value = entry.value();
            const auto *known = std::find_if(std::begin(keys), std::end(keys),
                                             [&](const JsonKey &key) { return name == QLatin1String(key.name); });
            if (known == std::end(keys)) {
                note(NoteKind::unknownKey, textOf(name, value));
                continue;
            }
            if (!hasType(value, known->type))
                note(NoteKind::wrongType, textOf(name, value));
            values[size_t(known - std::begin(keys))] = std::move(value);
        }
        return values;
    }

    void need(const QJsonObject &object, std::initializer_list<const char *> keys)
    {
        for (const char *key : keys) {
            if (!object.contains(QLatin1String(key)))
                note(NoteKind::missingKey, QLatin1String(key));
        }
    }

    // The reader skips an element that is not an object.
    template <typename Work> void forEachObject(const QJsonArray &array, Work work)
    {
        for (const QJsonValue &value : array) {
            if (value.isObject())
                work(value.toObject());
            else
                note(NoteKind::wrongType, textOf(QStringLiteral("[]"), value));
        }
    }

    // For items and values: no layout has a place for the labels of anything else. Returns the label that is read.
    QString overLabels(const QJsonArray &labels)
    {
        const QJsonValue text = labels.at(0).toObject().value(QLatin1String("text"));
        if (!labels.isEmpty() && !text.isString())
            note(NoteKind::wrongType, textOf(QStringLiteral("labels"), labels.at(0)));
        if (labels.size() > 1)
            note(NoteKind::furtherLanguages, labels.at(1).toObject().value(QLatin1String("text")).toString());
        return text.toString();
    }

    void overLevelHead(const QJsonObject &level)
    {
        overKeys(level, levelKeys);
        if (isAfterFirstLevel)
            note(NoteKind::furtherLevel, level.value(QLatin1String("name")).toString());
        isAfterFirstLevel = true;
        const QJsonObject ids = objectOf(level, "ids");
        overKeys(ids, idsKeys);
        const QJsonArray items = arrayOf(ids, "items");
        isColumnOneTaken |= !items.isEmpty();
        overItems(items, ItemPlace::ids);
    }

    void overRecord(const QJsonObject &record)
    {
        overKeys(record, recordKeys);
        need(record, { "name" });
        if (hasRecordTypes && !record.contains(QLatin1String("recordType")))
            note(NoteKind::missingKey,
                 inWords(QStringLiteral("recordType of"), record.value(QLatin1String("name")).toString()));
        overKeys(objectOf(record, "occurrences"), occurrencesKeys);
        overItems(arrayOf(record, "items"), ItemPlace::record);
    }

    void overItems(const QJsonArray &items, ItemPlace place)
    {
        bool isFirst = place == ItemPlace::record && isColumnOneTaken;
        forEachObject(items, [&](const QJsonObject &item) {
            overItem(item, place);
            if (isFirst && !item.contains(QLatin1String("start")))
                note(NoteKind::firstAtColumnOne, variable);
            isFirst = false;
            variable.clear();
        });
    }

    void overItem(const QJsonObject &item, ItemPlace place)
    {
        const bool canRepeat = place == ItemPlace::record;
        const QString name = item.value(QLatin1String("name")).toString();
        const QJsonValue occurrences = item.value(QLatin1String("occurrences"));
        const int count = canRepeat ? occurrencesOf(occurrences) : 1;
        variable = count >= 2 ? name + QLatin1String("_1") : name;
        const Values<std::size(itemKeys)> values = overKeys(item, itemKeys);
        const auto valueOf = [&](ItemKey key) -> const QJsonValue & { return values[size_t(key)]; };
        need(item, { "name", "length" });
        overContentType(valueOf(ItemKey::contentType), valueOf(ItemKey::length).toInt());
        overKeys(occurrences.toObject(), occurrencesKeys);
        if (count >= 2)
            note(NoteKind::occurrenceNumbers, name);
        if (!canRepeat && !occurrences.toObject().isEmpty())
            note(NoteKind::unknownKey, textOf(QStringLiteral("occurrences"), occurrences));
        overLabels(valueOf(ItemKey::labels).toArray());
        const QJsonValue &decimals = valueOf(ItemKey::decimals);
        if (decimals.toDouble() > 0)
            note(NoteKind::decimalsNotRead, textOf(QStringLiteral("decimals"), decimals));
        if (valueOf(ItemKey::subitem).toBool()) {
            const bool isPlaced = !valueOf(ItemKey::start).isUndefined();
            note(isPlaced ? NoteKind::subitem : NoteKind::subitemReadFlat, variable);
        }
        overValueSets(valueOf(ItemKey::valueSets).toArray());
    }

    // Every type except the alphanumeric one is read as a number.
    void overContentType(const QJsonValue &type, int length)
    {
        isNumber = !isAlpha(type);
        isInteger = isNumber && length <= longestInteger;
        if (isNumber && type.isString() && type.toString().compare(QLatin1String("numeric"), Qt::CaseInsensitive) != 0)
            note(NoteKind::wordNotRecognised, textOf(QStringLiteral("contentType"), type));
    }

    void overValueSets(const QJsonArray &sets)
    {
        for (int i = 1; i < sets.size(); ++i) {
            const QString name = sets.at(i).toObject().value(QLatin1String("name")).toString();
            note(NoteKind::furtherValueSet, name);
        }
        if (sets.isEmpty())
            return;
        if (!sets.at(0).isObject())
            return note(NoteKind::wrongType, textOf(QStringLiteral("valueSets"), sets.at(0)));
        const QJsonObject set = sets.at(0).toObject();
        overKeys(set, valueSetKeys);
        textsSoFar.clear();
        numbersSoFar.clear();
        forEachObject(arrayOf(set, "values"), [this](const QJsonObject &value) { overValue(value); });
    }

    void overValue(const QJsonObject &value)
    {
        const auto [labels, pairs, special] = overKeys(value, valueKeys);
        const QString label = overLabels(labels.toArray());
        const QJsonArray all = pairs.toArray();
        const QJsonObject first = all.at(0).toObject();
        const auto [single, range] = overKeys(first, pairKeys);
        const QString code = codeOf(single, range);
        if (!special.isUndefined())
            note(NoteKind::specialNotRead, inWords(code, label));
        if (!single.isUndefined() && !range.isUndefined())
            note(NoteKind::furtherPairs, inWords(codeOfRange(range), label));
        for (int i = 1; i < all.size(); ++i)
            note(NoteKind::furtherPairs, inWords(codeOf(all.at(i).toObject()), label));
        overCode(code, single.isUndefined() ? CodeForm::range : CodeForm::value, label);
        if (label.isEmpty())
            note(NoteKind::valueWithoutLabel, code);
    }

    static QString inWords(const QString &code, const QString &label)
    {
        return (code + QLatin1Char(' ') + label).trimmed();
    }

    void overCode(const QString &code, CodeForm form, const QString &label)
    {
        const bool isRange = form == CodeForm::range;
        bool isNumeral = false;
        const double number = isNumber ? numberOf(code, &isNumeral) : 0;
        if (code.isNull())
            note(NoteKind::valueWithoutCode, label);
        else if (isNumber && !isNumeral && (isInteger || !isRange))
            note(NoteKind::codeAsZero, inWords(code, label));
        else if (isRange)
            note(NoteKind::rangeAsCode, code);
        else if (isNumeral ? !numbersSoFar.isNew(number) : !textsSoFar.insert(code).second)
            note(NoteKind::duplicateCode, inWords(code, label));
    }

    // Most codes are integers; the slower conversion is for the others.
    static double numberOf(const QString &code, bool *isNumeral)
    {
        const int integer = numbers::toInt(code, isNumeral);
        return *isNumeral ? integer : code.toDouble(isNumeral);
    }

    ReadReport &report;
    QString variable; ///< of the current item
    bool isNumber = false;
    bool isInteger = false;
    NumbersSoFar numbersSoFar;    ///< codes of the current value set
    KeyedSet<QString> textsSoFar; ///< codes of the current value set that are not numbers
    bool isAfterFirstLevel = false;
    bool hasRecordTypes = false;
    bool isColumnOneTaken = false; ///< by the record type or the id items
};

} // namespace

void JsonDictionaryNotes::fileNotRead(const QString &readProblem, const QString &problem) const
{
    if (!report)
        return;
    if (readProblem.isEmpty())
        report->add(NoteKind::fileNotRead, problem);
    else
        report->add(NoteKind::readFailed, readProblem);
}

void JsonDictionaryNotes::document(const QJsonObject &root) const
{
    if (report)
        DocumentWalk(*report).overDocument(root);
}

void JsonDictionaryNotes::readingEnded(const QString &record) const
{
    if (report)
        report->add(NoteKind::readingEnded, record);
}

} // namespace cspro
