#include "cspro/CSProJson_p.h"

#include "cspro/ValueSet_p.h"
#include "import/Constants.h"
#include "util/EmptyText_p.h"
#include "util/FileReading_p.h"
#include "util/Numbers_p.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <limits>

namespace
{

constexpr int headSize = 16;

// Returns the first bytes of a file, without carriage returns, as text mode reads them, and without white space around
// them. Sets readProblem if the system fails to read them.
QByteArray readHead(const QString &fileName, QString &readProblem)
{
    QFile file(fileName);
    QByteArray head;
    if (!file.open(QIODevice::ReadOnly))
        return head;
    while (head.size() < headSize && !file.atEnd()) {
        const QByteArray bytes = file.read(headSize);
        if (bytes.isEmpty())
            break; // LCOV_EXCL_LINE: only a failing disk has no bytes before the end of the file
        std::copy_if(bytes.cbegin(), bytes.cend(), std::back_inserter(head), [](char byte) { return byte != '\r'; });
    }
    char next = 0;
    if (head.isEmpty()) // a file of size 0 may fail at its first byte, which nothing has requested
        file.read(&next, 1);
    readProblem = readProblemOf(file);
    return head.left(headSize).trimmed();
}

// Returns the reason why a file with this head is not read.
QString describeHead(const QByteArray &head)
{
    QString words = QStringLiteral("no \"{\" after white space among the first 16 bytes");
    if (head.startsWith("\xEF\xBB\xBF"))
        words += QLatin1String(", but a byte-order mark of UTF-8");
    else if (head.startsWith("\xFF\xFE") || head.startsWith("\xFE\xFF"))
        words += QLatin1String(", but a byte-order mark of UTF-16");
    return words;
}

// Returns the whole file; empty if it cannot be read, and readProblem then has the reason.
QByteArray readWhole(const QString &fileName, QString &readProblem)
{
    constexpr qint64 maxBytes = std::numeric_limits<int>::max(); // of a QByteArray of Qt 5
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray(); // LCOV_EXCL_LINE: the file was opened a moment before
    if (file.size() > maxBytes) {
        readProblem = QStringLiteral("is larger than 2 GiB, the limit for a JSON dictionary");
        return QByteArray();
    }
    QByteArray bytes = readAllOf(file);
    readProblem = readProblemOf(file);
    return bytes;
}

QJsonDocument parse(const QByteArray &bytes, QString &problem)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    problem = error.errorString() + QStringLiteral(", at byte %1").arg(error.offset);
    return error.error == QJsonParseError::NoError ? document : QJsonDocument();
}

// The width of an item in a line: at least one character.
int widthOf(const TCSProItem &item)
{
    return std::max(item.length, 1);
}

void describe(TCSProItem &item, const QJsonObject &object)
{
    item.name = object.value(QLatin1String("name")).toString(emptyText());
    item.dataType = cspro::isAlpha(object.value(QLatin1String("contentType")));
    item.length = object.value(QLatin1String("length")).toInt();
}

// A copy of a repeated item, without a value set. The first occurrence is 1.
std::unique_ptr<TCSProItem> occurrenceOf(const TCSProItem &item, int occurrence)
{
    auto copy = std::make_unique<TCSProItem>();
    copy->record = item.record;
    copy->label = item.label;
    copy->name = item.name + Vocabulary::Underscore + QString::number(occurrence);
    copy->start = numbers::clamped(qint64(occurrence - 1) * item.length + item.start);
    copy->length = item.length;
    copy->dataType = item.dataType;
    copy->decimalChar = item.decimalChar;
    copy->zeroFill = item.zeroFill;
    copy->isFurtherOccurrence = occurrence > 1;
    return copy;
}

// Makes new objects that share the texts.
OwnedValueSet copyOf(const TCSProValueSet &source)
{
    OwnedValueSet set(new TCSProValueSet);
    set->name = source.name;
    set->label = source.label;
    set->items->reserve(source.items->size());
    for (const TValueSetItem *sourceItem : qAsConst(*source.items)) {
        auto item = std::make_unique<TValueSetItem>();
        item->code = sourceItem->code;
        item->name = sourceItem->name;
        set->addItem(item.release());
    }
    return set;
}

// The item owns the set from here on, unless memory runs out.
void handOver(OwnedValueSet set, TCSProItem &item)
{
    item.addValueSet(set.get());
    (void)set.release();
}

} // namespace

TCSProJson::TCSProJson() = default;
TCSProJson::~TCSProJson() = default;

void TCSProJson::readFile(QString fileName)
{
    const QByteArray head = readHead(fileName, readProblem);
    if (head.startsWith('{'))
        parseJson(fileName);
    else
        notes.fileNotRead(readProblem, describeHead(head));
}

void TCSProJson::parseJson(const QString &fileName)
{
    QString problem;
    const QJsonDocument document = parse(readWhole(fileName, readProblem), problem);
    if (!document.isObject())
        return notes.fileNotRead(readProblem, problem);
    const QJsonObject root = document.object();
    const QJsonObject dictionary = cspro::dictionaryOf(root);
    const Defaults defaults = readSettings(dictionary);
    notes.document(root);
    if (!readLevels(dictionary.value(QLatin1String("levels")).toArray(), defaults))
        notes.readingEnded(currentRecord->name);
}

TCSProJson::Defaults TCSProJson::readSettings(const QJsonObject &dictionary)
{
    constexpr double usualVersion = 8.0;
    name = dictionary.value(QLatin1String("name")).toString(emptyText());
    version = numbers::toText(dictionary.value(QLatin1String("version")).toDouble(usualVersion));
    const QJsonObject recordType = dictionary.value(QLatin1String("recordType")).toObject();
    recordTypeStart = recordType.value(QLatin1String("start")).toInt();
    recordTypeLen = recordType.value(QLatin1String("length")).toInt();
    commonRecord->label = QStringLiteral("Common");
    const QJsonObject itemDefaults = dictionary.value(QLatin1String("defaults")).toObject();
    return { dictionary.value(QLatin1String("relativePositions")).toBool(true),
             itemDefaults.value(QLatin1String("decimalMark")).toBool(),
             itemDefaults.value(QLatin1String("zeroFill")).toBool() };
}

// The ids of all levels come first, then the records of all levels. Returns false if the dictionary would exceed a
// limit.
bool TCSProJson::readLevels(const QJsonArray &levels, const Defaults &defaults)
{
    const auto idsOf = [&](const QJsonValue &level) { return readIds(level.toObject(), defaults); };
    const auto recordsOf = [&](const QJsonValue &level) { return readRecords(level.toObject(), defaults); };
    return std::all_of(levels.begin(), levels.end(), idsOf) && std::all_of(levels.begin(), levels.end(), recordsOf);
}

// Every level begins at column 1 again.
bool TCSProJson::readIds(const QJsonObject &level, const Defaults &defaults)
{
    const QJsonArray objects = level.value(QLatin1String("ids")).toObject().value(QLatin1String("items")).toArray();
    return readItems(objects, commonRecord, cspro::ItemPlace::ids, defaults);
}

bool TCSProJson::readRecords(const QJsonObject &level, const Defaults &defaults)
{
    const QJsonArray objects = level.value(QLatin1String("records")).toArray();
    for (const QJsonValue &value : objects) {
        if (!value.isObject())
            continue;
        const QJsonObject object = value.toObject();
        TCSProRecord *record = readRecord(object);
        if (!readItems(object.value(QLatin1String("items")).toArray(), record, cspro::ItemPlace::record, defaults))
            return false;
    }
    return true;
}

TCSProRecord *TCSProJson::readRecord(const QJsonObject &object)
{
    auto record = std::make_unique<TCSProRecord>();
    record->name = object.value(QLatin1String("name")).toString(emptyText());
    record->label = readJsonLabel(object);
    record->recordType = object.value(QLatin1String("recordType")).toString(emptyText());
    const QJsonObject occurrences = object.value(QLatin1String("occurrences")).toObject();
    record->maxRecords = occurrences.value(QLatin1String("maximum")).toInt(1);
    const bool isRequired = occurrences.value(QLatin1String("required")).toBool();
    record->required = isRequired ? QStringLiteral("YES") : QStringLiteral("NO");
    debugLine("Record", record->name, record->recordType);
    records->append(record.get());
    currentRecord = record.release();
    if (!currentRecord->recordType.isEmpty())
        recordMap[currentRecord->recordType] = currentRecord;
    return currentRecord;
}

// The items of one record, from column 1 on. Returns false if the dictionary would exceed a limit.
bool TCSProJson::readItems(const QJsonArray &objects, TCSProRecord *record, cspro::ItemPlace place,
                           const Defaults &defaults)
{
    const QLatin1String startKey("start");
    int position = 1;
    for (const QJsonValue &value : objects) {
        if (!value.isObject())
            continue;
        QJsonObject object = value.toObject();
        const bool canRepeat = place == cspro::ItemPlace::record;
        const int count = canRepeat ? cspro::occurrencesOf(object.value(QLatin1String("occurrences"))) : 1;
        if (count >= 2) {
            if (!addCopies(object, record, count, position, defaults))
                return false;
            continue;
        }
        if (!hasRoom(1, 0))
            return false;
        if (defaults.relativePositions && !object.contains(startKey))
            object.insert(startKey, position);
        readJsonItem(object, record, position, defaults.relativePositions, defaults.decimalMark, defaults.zeroFill);
    }
    return true;
}

QString TCSProJson::readJsonLabel(const QJsonObject &object) const
{
    const QJsonArray labels = object.value(QLatin1String("labels")).toArray();
    return labels.at(0).toObject().value(QLatin1String("text")).toString(emptyText());
}

void TCSProJson::readJsonItem(const QJsonObject &object, TCSProRecord *record, int &position,
                              bool /*relativePositions*/, bool decimalMarkDefault, bool zeroFillDefault)
{
    if (!record)
        return;
    auto item = std::make_unique<TCSProItem>();
    item->record = record;
    item->label = readJsonLabel(object);
    describe(*item, object);
    // A value of another type counts as false; a missing key takes the default.
    const QJsonValue decimalMark = object.value(QLatin1String("decimalMark"));
    const QJsonValue zeros = object.value(QLatin1String("zeroFill"));
    item->decimalChar = decimalMark.isUndefined() ? decimalMarkDefault : decimalMark.toBool();
    item->zeroFill = zeros.isUndefined() ? zeroFillDefault : zeros.toBool();
    const QJsonValue start = object.value(QLatin1String("start"));
    item->start = start.isUndefined() ? std::max(position, 1) : start.toInt(position);
    const qint64 base = start.isUndefined() ? position : item->start;
    position = numbers::clamped(base + widthOf(*item));
    readJsonValueSets(item.get(), object);
    record->addItem(item.get());
    currentItem = item.get();
    items->append(item.release());
}

// One copy of a repeated item for each occurrence, each with its own value-set objects. Adds nothing and returns false
// if the dictionary would exceed a limit.
bool TCSProJson::addCopies(const QJsonObject &object, TCSProRecord *record, int count, int &position,
                           const Defaults &defaults)
{
    TCSProItem item;
    item.record = record;
    item.label = readJsonLabel(object);
    describe(item, object);
    item.decimalChar = object.value(QLatin1String("decimalMark")).toBool(defaults.decimalMark);
    item.zeroFill = object.value(QLatin1String("zeroFill")).toBool(defaults.zeroFill);
    item.start = object.value(QLatin1String("start")).toInt(position);

    readJsonValueSets(&item, object);
    const OwnedValueSet source(item.hasValueSets() ? item.getValueSet(0) : nullptr);

    constexpr int maxSuffixCharacters = 11;
    if (!hasRoomForValues(count, source ? source->Count() : 0)
        || !hasRoom(count, qint64(count) * (item.name.size() + maxSuffixCharacters)))
        return false;
    const int base = items->size();
    for (int k = 1; k <= count; ++k) {
        auto copy = occurrenceOf(item, k);
        copy->firstOccurrence = base;
        if (source)
            handOver(copyOf(*source), *copy);
        record->addItem(copy.get());
        items->append(copy.release());
    }
    position = numbers::clamped(qint64(widthOf(item)) * count + item.start);
    return true;
}

void TCSProJson::readJsonValueSets(TCSProItem *item, const QJsonObject &object)
{
    const QJsonValue first = object.value(QLatin1String("valueSets")).toArray().at(0);
    if (!first.isObject())
        return;
    const QJsonObject source = first.toObject();
    OwnedValueSet set(new TCSProValueSet);
    set->name = source.value(QLatin1String("name")).toString(emptyText());
    set->label = readJsonLabel(source);
    const QJsonArray values = source.value(QLatin1String("values")).toArray();
    set->items->reserve(values.size());
    for (const QJsonValue &value : values) {
        if (!value.isObject())
            continue;
        const QJsonObject entry = value.toObject();
        auto valueItem = std::make_unique<TValueSetItem>();
        const QJsonObject pair = entry.value(QLatin1String("pairs")).toArray().at(0).toObject();
        valueItem->code = texts.text(notNull(cspro::codeOf(pair)));
        valueItem->name = texts.text(readJsonLabel(entry));
        set->addItem(valueItem.release());
    }
    handOver(std::move(set), *item);
}
