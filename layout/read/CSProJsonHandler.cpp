#include "read/CSProJsonHandler_p.h"

#include "read/CSProCommon_p.h"
#include "read/Decoding_p.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace vanlayout
{

namespace
{

bool isAscii(const char *bytes, int size)
{
    return std::none_of(bytes, bytes + size, [](char byte) { return uchar(byte) >= 0x80; });
}

// The value of a number in JSON syntax, such as an integer or "-1.5e3".
std::optional<double> numberOf(const char *bytes, int size)
{
    const std::string_view text(bytes, size_t(size));
    bool isNumber = text.find_first_not_of("0123456789+-.eE") == std::string_view::npos;
    const double value = isNumber ? QByteArray::fromRawData(bytes, size).toDouble(&isNumber) : 0;
    return isNumber && std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
}

// The value of a whole number in any spelling.
std::optional<int> integerOf(const char *bytes, int size)
{
    int whole = 0;
    const auto parsed = std::from_chars(bytes, bytes + size, whole);
    if (parsed.ec == std::errc() && parsed.ptr == bytes + size)
        return whole;
    constexpr double lowest = std::numeric_limits<int>::lowest();
    constexpr double highest = std::numeric_limits<int>::max();
    const double real = numberOf(bytes, size).value_or(highest + 1);
    return real >= lowest && real <= highest && std::trunc(real) == real ? std::optional<int>(int(real)) : std::nullopt;
}

std::optional<bool> booleanOf(const char *bytes, int size)
{
    const std::string_view word(bytes, size_t(size));
    if (word == "true")
        return true;
    if (word == "false")
        return false;
    return std::nullopt;
}

QLatin1String nameOf(JsonShape shape)
{
    switch (shape) {
    case JsonShape::Text:
        return QLatin1String("a text");
    case JsonShape::Integer:
        return QLatin1String("an integer of 32 bits");
    case JsonShape::Number:
        return QLatin1String("a number");
    case JsonShape::Boolean:
        return QLatin1String("true or false");
    case JsonShape::Object:
        return QLatin1String("an object");
    case JsonShape::List:
        return QLatin1String("a list of objects");
    case JsonShape::Texts:
    case JsonShape::Range:
    case JsonShape::Kept:
        break;
    }
    return QLatin1String("a list of texts");
}

QString wordOf(const JsonKey &key)
{
    return QString::fromLatin1(key.word.data(), int(key.word.size()));
}

} // namespace

bool CSProJsonHandler::Null()
{
    return scalar({ Scalar::Type::Null, false, nullptr, 0 });
}

bool CSProJsonHandler::Bool(bool value)
{
    return scalar({ Scalar::Type::Boolean, value, nullptr, 0 });
}

bool CSProJsonHandler::RawNumber(const char *number, rapidjson::SizeType size, bool /*copy*/)
{
    return scalar({ Scalar::Type::Number, false, number, int(size) });
}

bool CSProJsonHandler::String(const char *text, rapidjson::SizeType size, bool /*copy*/)
{
    return scalar({ Scalar::Type::Text, false, text, int(size) });
}

bool CSProJsonHandler::Key(const char *text, rapidjson::SizeType size, bool /*copy*/)
{
    if (skipping == Skipping::None) {
        setProblemLine();
        findKey(text, int(size));
    }
    return true;
}

bool CSProJsonHandler::StartObject()
{
    if (skipping != Skipping::None)
        return beginPart();
    if (frames.empty()) {
        begin(&dictionaryElement(), nullptr, Shape::Object);
    } else if (frames.back().isList() && frames.back().element) {
        begin(frames.back().element, nullptr, Shape::Object);
    } else if (!frames.back().isList() && key && key->shape == JsonShape::Object) {
        markValue();
        begin(key->element, key, Shape::Object);
    } else {
        beginSkipping();
    }
    return true;
}

bool CSProJsonHandler::EndObject(rapidjson::SizeType /*memberCount*/)
{
    if (skipping != Skipping::None)
        return endPart();
    findings.setLine(0);
    const Frame ended = std::move(frames.back());
    warnOfMissingKeys(ended);
    frames.pop_back();
    if (ended.element->end && !ended.element->end(draft))
        keepElement(ended);
    return true;
}

bool CSProJsonHandler::StartArray()
{
    if (skipping != Skipping::None)
        return beginPart();
    if (frames.empty())
        return false;
    if (!frames.back().isList() && key && (key->shape == JsonShape::List || key->shape == JsonShape::Texts)) {
        markValue();
        begin(key->element, key, Shape::List);
    } else {
        beginSkipping();
        if (!frames.back().isList() && key && key->shape == JsonShape::Range)
            skipping = Skipping::Range;
    }
    return true;
}

bool CSProJsonHandler::EndArray(rapidjson::SizeType /*elementCount*/)
{
    if (skipping != Skipping::None)
        return endPart();
    const JsonKey &ended = *frames.back().key;
    frames.pop_back();
    if (ended.end)
        ended.end(draft);
    return true;
}

bool CSProJsonHandler::scalar(const Scalar &value)
{
    if (skipping != Skipping::None)
        skip(value);
    else if (frames.empty())
        return false;
    else if (frames.back().isList())
        entry(value);
    else
        member(value);
    return true;
}

// Sets the value of a key.
void CSProJsonHandler::member(const Scalar &value)
{
    if (!key) {
        keep(strayReason, value);
        return;
    }
    if (value.type == Scalar::Type::Null)
        return;
    markValue();
    switch (key->shape) {
    case JsonShape::Text:
        setText(value);
        break;
    case JsonShape::Integer:
        setInteger(value);
        break;
    case JsonShape::Number:
        setNumber(value);
        break;
    case JsonShape::Boolean:
        setBoolean(value);
        break;
    case JsonShape::Kept:
        keep(Reason::NoPlace, value);
        break;
    default:
        keep(Reason::WrongType, value);
    }
}

// Adds an entry of a list.
void CSProJsonHandler::entry(const Scalar &value)
{
    setProblemLine();
    const bool isText = value.type == Scalar::Type::Text || value.type == Scalar::Type::Number;
    if (frames.back().element || !isText) {
        keep(Reason::WrongType, value);
        return;
    }
    draft.aliases->append(textOf(value));
    if (value.type == Scalar::Type::Number)
        informOfConversion(draft.aliases->constLast());
}

void CSProJsonHandler::setText(const Scalar &value)
{
    if (value.type == Scalar::Type::Boolean) {
        keep(Reason::WrongType, value);
        return;
    }
    const QString text = textOf(value);
    const JsonUse use = key->setText(draft, text);
    if (value.type == Scalar::Type::Number)
        informOfConversion(text);
    if (use != JsonUse::Held)
        keep(use == JsonUse::Extra ? Reason::NoPlace : Reason::UnknownWord, value);
}

void CSProJsonHandler::setInteger(const Scalar &value)
{
    const auto integer = value.type == Scalar::Type::Boolean ? std::nullopt : integerOf(value.bytes, value.size);
    if (!integer) {
        keep(Reason::WrongType, value);
        return;
    }
    draft.number = std::string_view(value.bytes, size_t(value.size));
    draft.isNumberText = value.type == Scalar::Type::Text;
    key->setInteger(draft, *integer);
    if (draft.isNumberText)
        informOfConversion(QString::number(*integer));
}

void CSProJsonHandler::setNumber(const Scalar &value)
{
    if (value.type == Scalar::Type::Boolean || !numberOf(value.bytes, value.size)) {
        keep(Reason::WrongType, value);
        return;
    }
    const QString text = textOf(value);
    key->setText(draft, text);
    if (value.type == Scalar::Type::Text)
        informOfConversion(text);
}

void CSProJsonHandler::setBoolean(const Scalar &value)
{
    if (value.type == Scalar::Type::Boolean) {
        key->setBoolean(draft, value.boolean);
        return;
    }
    const auto boolean = value.type == Scalar::Type::Text ? booleanOf(value.bytes, value.size) : std::nullopt;
    if (!boolean) {
        keep(Reason::WrongType, value);
        return;
    }
    key->setBoolean(draft, *boolean);
    informOfConversion(*boolean ? QStringLiteral("true") : QStringLiteral("false"));
}

// Keys usually occur in the order of their list, so the key after the previous one is the most likely.
void CSProJsonHandler::findKey(const char *text, int size)
{
    Frame &frame = frames.back();
    const std::string_view word(text, size_t(size));
    const JsonKey *begin = frame.element->keys;
    const JsonKey *end = begin + frame.element->keyCount;
    const auto isWord = [word](const JsonKey &candidate) { return candidate.word == word; };
    const JsonKey *found = std::find_if(begin + frame.nextKey, end, isWord);
    if (found == end)
        found = std::find_if(begin, begin + frame.nextKey, isWord);
    if (found == end || !isWord(*found)) {
        key = nullptr;
        strayKey = decoding::fromUtf8(text, size);
        strayReason = isRepeatedUnknownKey(text, size) ? Reason::RepeatedKey : Reason::UnknownKey;
        return;
    }
    const int index = int(found - begin);
    frame.nextKey = index + 1;
    key = found;
    if (frame.seen & (1U << index)) {
        key = nullptr;
        strayKey = QString::fromLatin1(text, size);
        strayReason = Reason::RepeatedKey;
    }
    frame.seen |= 1U << index;
}

bool CSProJsonHandler::isRepeatedUnknownKey(const char *text, int size)
{
    Frame &frame = frames.back();
    if (!frame.unknownKeys)
        frame.unknownKeys = std::make_unique<std::set<std::string>>();
    return !frame.unknownKeys->emplace(text, size_t(size)).second;
}

void CSProJsonHandler::begin(const JsonElement *element, const JsonKey *ofKey, Shape shape)
{
    frames.push_back({ element, ofKey, shape, position.Tell(), findings.extraCount() });
    const ElementAddress before = draft.address;
    const auto step = shape == Shape::List ? ofKey->begin : element->begin;
    if (step)
        step(draft);
    const bool isElement = frames.size() == 1 || !(draft.address == before); // not a part of one, such as a label
    if (lines && isElement)
        setLine(*lines, draft.address, currentLine());
}

int CSProJsonHandler::currentLine()
{
    const size_t offset = position.Tell();
    const std::string_view passed = source.substr(countedUntil, offset - countedUntil);
    line += int(std::count(passed.begin(), passed.end(), '\n'));
    countedUntil = offset;
    return line;
}

// Problems are at the line of their key or entry, and at that of their element if they are found at its end.
void CSProJsonHandler::setProblemLine()
{
    if (lines)
        findings.setLine(currentLine());
}

void CSProJsonHandler::warnOfMissingKeys(const Frame &frame)
{
    for (int index = 0; index < frame.element->keyCount; ++index) {
        const JsonKey &wanted = frame.element->keys[index];
        if (wanted.isMust && !(frame.hasValue & (1U << index)))
            findings.warn("missing-key", QStringLiteral("the key \"%1\" is missing").arg(fullKey(wordOf(wanted))),
                          draft.address);
    }
}

// Keeps an entry of a list that is not usable as a whole, instead of only its parts that have no place.
void CSProJsonHandler::keepElement(const Frame &element)
{
    findings.dropExtrasFrom(element.extras);
    findings.addExtra(fullKey(), jsonSpellingOf(sourceFrom(element.begin)), draft.address);
}

// Lists and objects that are kept in their spelling

void CSProJsonHandler::beginSkipping()
{
    skipping = Skipping::Kept;
    skippedFrom = position.Tell();
    openParts = 1;
    rangeEnds.clear();
    isRangeSound = true;
    if (frames.back().isList())
        setProblemLine();
    else if (key)
        markValue();
}

bool CSProJsonHandler::beginPart()
{
    isRangeSound = false;
    ++openParts;
    return !isTooDeep();
}

bool CSProJsonHandler::endPart()
{
    if (--openParts > 0)
        return true;
    const std::string_view skipped = sourceFrom(skippedFrom);
    if (skipping == Skipping::Range)
        draft.setRange(std::move(rangeEnds), isRangeSound, skipped);
    else
        keep(reasonToSkip(), jsonSpellingOf(skipped));
    skipping = Skipping::None;
    return true;
}

CSProJsonHandler::Reason CSProJsonHandler::reasonToSkip() const
{
    if (frames.back().isList())
        return Reason::WrongType;
    if (!key)
        return strayReason;
    return key->shape == JsonShape::Kept ? Reason::NoPlace : Reason::WrongType;
}

void CSProJsonHandler::skip(const Scalar &value)
{
    if (skipping != Skipping::Range)
        return;
    if (value.type == Scalar::Type::Text || value.type == Scalar::Type::Number)
        rangeEnds.append(textOf(value));
    else
        isRangeSound = false;
}

void CSProJsonHandler::keep(Reason reason, const Scalar &value)
{
    const std::string_view bytes(value.bytes, size_t(value.size));
    switch (value.type) {
    case Scalar::Type::Null:
        keep(reason, QStringLiteral("null"));
        break;
    case Scalar::Type::Boolean:
        keep(reason, value.boolean ? QStringLiteral("true") : QStringLiteral("false"));
        break;
    case Scalar::Type::Number:
        keep(reason, QString::fromLatin1(value.bytes, value.size));
        break;
    case Scalar::Type::Text:
        keep(reason, jsonSpellingOfText(bytes));
        break;
    }
}

void CSProJsonHandler::keep(Reason reason, const QString &spelling)
{
    const QString word = keptKey();
    const bool isRepeated = reason == Reason::RepeatedKey;
    findings.addExtra(isRepeated ? QLatin1String("repeated ") + strayKey : word, spelling, draft.address);
    report(reason, word);
}

void CSProJsonHandler::report(Reason reason, const QString &word)
{
    switch (reason) {
    case Reason::UnknownKey:
        findings.inform("unknown-key", QStringLiteral("the key %1 is unknown").arg(cspro::quoted(word)), draft.address);
        break;
    case Reason::RepeatedKey:
        findings.inform("repeated-key",
                        QStringLiteral("the key %1 occurs more than once in one object; the first one is used")
                            .arg(cspro::quoted(word)),
                        draft.address);
        break;
    case Reason::NoPlace:
        findings.inform("extra-key",
                        QStringLiteral("the value of %1 has no member in the layout; it is kept as an extra statement")
                            .arg(cspro::quoted(word)),
                        draft.address);
        break;
    case Reason::UnknownWord:
        findings.warn("unknown-word", QStringLiteral("the value of %1 is not a valid word").arg(cspro::quoted(word)),
                      draft.address);
        break;
    case Reason::WrongType:
        findings.warn(
            "wrong-type",
            QStringLiteral("a value of %1 is not %2, and is ignored").arg(cspro::quoted(word), nameOf(keptShape())),
            draft.address);
        break;
    }
}

// The key of the value that is being kept, from the innermost element that paths name.
QString CSProJsonHandler::keptKey() const
{
    if (frames.back().isList())
        return fullKey();
    return fullKey(key ? wordOf(*key) : strayKey);
}

JsonShape CSProJsonHandler::keptShape() const
{
    const Frame &frame = frames.back();
    if (!frame.isList())
        return key->shape;
    return frame.element ? JsonShape::Object : JsonShape::Text;
}

// The keys that lead to the open object or list from the innermost element that paths name.
QStringList CSProJsonHandler::openKeys() const
{
    const auto isInPaths = [](const Frame &frame) { return !frame.isList() && frame.element->isInPaths; };
    const auto holder = std::find_if(frames.rbegin(), frames.rend(), isInPaths);
    QStringList words;
    for (auto frame = holder.base(); frame != frames.end(); ++frame)
        if (frame->key)
            words.append(wordOf(*frame->key));
    return words;
}

// The full key of a word in the open object, such as `security.settings`.
QString CSProJsonHandler::fullKey(const QString &word) const
{
    return (openKeys() << word).join(QLatin1Char('.'));
}

QString CSProJsonHandler::fullKey() const
{
    return openKeys().join(QLatin1Char('.'));
}

void CSProJsonHandler::informOfConversion(const QString &value)
{
    findings.inform("converted-type",
                    QStringLiteral("a value of %1 is not %2, and is read as %3")
                        .arg(cspro::quoted(keptKey()), nameOf(keptShape()), cspro::quoted(value)),
                    draft.address);
}

QString CSProJsonHandler::textOf(const char *bytes, int size)
{
    if (isAscii(bytes, size))
        return texts.text(QLatin1String(bytes, size));
    bool isDamaged = false;
    const QString text = decoding::fromUtf8(bytes, size, &isDamaged);
    if (isDamaged)
        findings.warn(
            "bad-bytes",
            QStringLiteral("a text has bytes that are not valid in its encoding; they were replaced by U+FFFD"),
            draft.address);
    return texts.text(text);
}

} // namespace vanlayout
