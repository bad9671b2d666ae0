#include "read/CSProJsonHandler_p.h"

#include "read/Decoding_p.h"

#include "util/Numbers_p.h"

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

// A number as an int: cut toward zero, and the nearest that an int can hold.
struct Integer {
    int value;
    bool isExact;
};

std::optional<Integer> integerOf(const char *bytes, int size)
{
    qint64 whole = 0;
    const auto parsed = std::from_chars(bytes, bytes + size, whole);
    if (parsed.ec == std::errc() && parsed.ptr == bytes + size)
        return Integer{ numbers::clamped(whole), numbers::clamped(whole) == whole };
    bool isNumber = false;
    const double real = QByteArray::fromRawData(bytes, size).toDouble(&isNumber);
    if (!isNumber || std::isnan(real))
        return std::nullopt;
    constexpr double lowest = std::numeric_limits<int>::lowest();
    constexpr double highest = std::numeric_limits<int>::max();
    const int value = int(std::clamp(real, lowest, highest));
    return Integer{ value, value == real };
}

bool isNumber(const char *bytes, int size)
{
    bool isOne = false;
    return std::isfinite(QByteArray::fromRawData(bytes, size).toDouble(&isOne)) && isOne;
}

std::optional<bool> booleanOf(const char *bytes, int size)
{
    const std::string_view word(bytes, size_t(size));
    if (word == "true" || word == "1")
        return true;
    if (word == "false" || word == "0")
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

} // namespace

bool CSProJsonHandler::Null()
{
    return scalar({ Scalar::Null, false, nullptr, 0 });
}

bool CSProJsonHandler::Bool(bool value)
{
    return scalar({ Scalar::Boolean, value, nullptr, 0 });
}

bool CSProJsonHandler::RawNumber(const char *number, rapidjson::SizeType size, bool /*copy*/)
{
    return scalar({ Scalar::Number, false, number, int(size) });
}

bool CSProJsonHandler::String(const char *text, rapidjson::SizeType size, bool /*copy*/)
{
    return scalar({ Scalar::Text, false, text, int(size) });
}

bool CSProJsonHandler::Key(const char *text, rapidjson::SizeType size, bool /*copy*/)
{
    if (reason == Reason::None)
        findKey(text, int(size));
    else
        spelling.key(text, size);
    return true;
}

bool CSProJsonHandler::StartObject()
{
    if (reason != Reason::None) {
        isRangeSound = false;
        spelling.beginObject();
        return !isTooDeep();
    }
    if (frames.empty()) {
        beginObject(dictionaryElement(), nullptr);
    } else if (frames.back().isList && frames.back().element) {
        beginObject(*frames.back().element, nullptr);
    } else if (!frames.back().isList && key && key->shape == JsonShape::Object) {
        frames.back().usable |= 1U << (key - frames.back().element->keys);
        beginObject(*key->element, key);
    } else {
        beginKeeping(Reason::WrongType);
        spelling.beginObject();
    }
    return true;
}

bool CSProJsonHandler::EndObject(rapidjson::SizeType /*memberCount*/)
{
    if (reason != Reason::None) {
        spelling.endObject();
        return endPartOfKept();
    }
    warnOfMissingKeys(frames.back());
    const JsonElement &element = *frames.back().element;
    frames.pop_back();
    if (element.end)
        element.end(draft);
    return true;
}

bool CSProJsonHandler::StartArray()
{
    if (reason != Reason::None) {
        isRangeSound = false;
        spelling.beginList();
        return !isTooDeep();
    }
    if (frames.empty())
        return false;
    const bool isValue = !frames.back().isList && key;
    if (isValue && (key->shape == JsonShape::List || key->shape == JsonShape::Texts)) {
        beginList(*key);
        return true;
    }
    beginKeeping(Reason::WrongType);
    if (reason == Reason::WrongType && isValue && key->shape == JsonShape::Range)
        reason = Reason::Range;
    spelling.beginList();
    return true;
}

bool CSProJsonHandler::EndArray(rapidjson::SizeType /*elementCount*/)
{
    if (reason != Reason::None) {
        spelling.endList();
        return endPartOfKept();
    }
    const JsonKey &ended = *frames.back().key;
    frames.pop_back();
    if (ended.end)
        ended.end(draft);
    return true;
}

bool CSProJsonHandler::scalar(const Scalar &value)
{
    if (reason != Reason::None) {
        write(value);
        return endPartOfKept();
    }
    if (frames.empty())
        return false;
    if (frames.back().isList)
        entry(value);
    else
        member(value);
    return true;
}

// The value of a key.
void CSProJsonHandler::member(const Scalar &value)
{
    if (!key) {
        keep(Reason::WrongType, value);
        return;
    }
    if (value.type == Scalar::Null)
        return;
    frames.back().usable |= 1U << (key - frames.back().element->keys);
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
    default:
        keep(Reason::WrongType, value);
    }
}

// An entry of a list.
void CSProJsonHandler::entry(const Scalar &value)
{
    const bool isText = value.type == Scalar::Text || value.type == Scalar::Number;
    if (frames.back().element || !isText) {
        keep(Reason::WrongType, value);
        return;
    }
    draft.aliases->append(textOf(value));
    if (value.type == Scalar::Number)
        informOfConversion(draft.aliases->constLast());
}

void CSProJsonHandler::setText(const Scalar &value)
{
    if (value.type == Scalar::Boolean) {
        keep(Reason::WrongType, value);
        return;
    }
    const QString text = textOf(value);
    const JsonUse use = key->setText(draft, text);
    if (value.type == Scalar::Number)
        informOfConversion(text);
    if (use != JsonUse::Held)
        keep(use == JsonUse::Extra ? Reason::NoPlace : Reason::UnknownWord, value);
}

void CSProJsonHandler::setInteger(const Scalar &value)
{
    const auto integer = value.type == Scalar::Boolean ? std::nullopt : integerOf(value.bytes, value.size);
    if (!integer) {
        keep(Reason::WrongType, value);
        return;
    }
    key->setInteger(draft, integer->value);
    if (!integer->isExact)
        keep(Reason::Inexact, value);
    else if (value.type == Scalar::Text)
        informOfConversion(QString::number(integer->value));
}

void CSProJsonHandler::setNumber(const Scalar &value)
{
    if (value.type == Scalar::Boolean || !isNumber(value.bytes, value.size)) {
        keep(Reason::WrongType, value);
        return;
    }
    const QString text = textOf(value);
    key->setText(draft, text);
    if (value.type == Scalar::Text)
        informOfConversion(text);
}

void CSProJsonHandler::setBoolean(const Scalar &value)
{
    if (value.type == Scalar::Boolean) {
        key->setBoolean(draft, value.boolean);
        return;
    }
    const auto boolean = booleanOf(value.bytes, value.size);
    if (!boolean) {
        keep(Reason::WrongType, value);
        return;
    }
    key->setBoolean(draft, *boolean);
    informOfConversion(*boolean ? QStringLiteral("true") : QStringLiteral("false"));
}

// Keys come in the order of their list, so that the one behind the last is the likeliest.
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
        frame.unknownKeys = std::make_unique<QSet<QByteArray>>();
    const int before = frame.unknownKeys->size();
    frame.unknownKeys->insert(QByteArray(text, size));
    return frame.unknownKeys->size() == before;
}

void CSProJsonHandler::beginObject(const JsonElement &element, const JsonKey *ofKey)
{
    frames.push_back({ &element, ofKey });
    if (element.begin)
        element.begin(draft);
}

void CSProJsonHandler::beginList(const JsonKey &ofKey)
{
    frames.back().usable |= 1U << (&ofKey - frames.back().element->keys);
    frames.push_back({ ofKey.element, &ofKey, true });
    if (ofKey.begin)
        ofKey.begin(draft);
}

void CSProJsonHandler::warnOfMissingKeys(const Frame &frame)
{
    for (int index = 0; index < frame.element->keyCount; ++index) {
        const JsonKey &wanted = frame.element->keys[index];
        if (wanted.isMust && !(frame.usable & (1U << index)))
            findings.warn("missing-key",
                          QStringLiteral("the key \"%1\" is missing")
                              .arg(fullKey(QString::fromLatin1(wanted.word.data(), int(wanted.word.size())))),
                          draft.address);
    }
}

// Values that are kept as their spelling

void CSProJsonHandler::keep(Reason why, const Scalar &value)
{
    beginKeeping(why);
    write(value);
    endKeeping();
}

void CSProJsonHandler::beginKeeping(Reason why)
{
    reason = why;
    if (!frames.back().isList && !key)
        reason = strayReason;
    else if (!frames.back().isList && key->shape == JsonShape::Kept)
        reason = Reason::NoPlace;
    rangeEnds.clear();
    isRangeSound = true;
    spelling.begin();
}

void CSProJsonHandler::write(const Scalar &value)
{
    switch (value.type) {
    case Scalar::Null:
        spelling.null();
        break;
    case Scalar::Boolean:
        spelling.boolean(value.boolean);
        break;
    case Scalar::Number:
        spelling.number(value.bytes, size_t(value.size));
        break;
    case Scalar::Text:
        spelling.text(value.bytes, size_t(value.size));
        break;
    }
    if (reason != Reason::Range)
        return;
    if (value.type == Scalar::Text || value.type == Scalar::Number)
        rangeEnds.append(textOf(value));
    else
        isRangeSound = false;
}

bool CSProJsonHandler::endPartOfKept()
{
    if (spelling.isWhole())
        endKeeping();
    return true;
}

void CSProJsonHandler::endKeeping()
{
    if (reason == Reason::Range)
        draft.setRange(std::move(rangeEnds), isRangeSound, decoding::fromUtf8(spelling.bytes(), spelling.size()));
    else
        addKept(decoding::fromUtf8(spelling.bytes(), spelling.size()));
    reason = Reason::None;
}

void CSProJsonHandler::addKept(const QString &value)
{
    const QString word = keptKey();
    if (reason == Reason::RepeatedKey)
        findings.addExtra(QLatin1String("repeated ") + strayKey, value, draft.address);
    else
        findings.addExtra(word, value, draft.address);
    switch (reason) {
    case Reason::UnknownKey:
        findings.inform("unknown-key", QStringLiteral("the key \"%1\" is unknown").arg(word), draft.address);
        break;
    case Reason::RepeatedKey:
        findings.inform("repeated-key",
                        QStringLiteral("the key \"%1\" comes again in one object; the first one counts").arg(word),
                        draft.address);
        break;
    case Reason::UnknownWord:
        findings.warn("unknown-word", QStringLiteral("the value of \"%1\" is no word that it can have").arg(word),
                      draft.address);
        break;
    case Reason::Inexact:
        findings.warn("bad-number", QStringLiteral("\"%1\" is no integer of 32 bits; the nearest one counts").arg(word),
                      draft.address);
        break;
    case Reason::WrongType:
        findings.warn(
            "wrong-type",
            QStringLiteral("a value of \"%1\" is not %2, so it does not count").arg(word, nameOf(keptShape())),
            draft.address);
        break;
    default:
        break;
    }
}

// The key of the value that is being kept, from the element that has a place in paths.
QString CSProJsonHandler::keptKey() const
{
    if (frames.back().isList)
        return fullKey(QString());
    return fullKey(key ? QString::fromLatin1(key->word.data(), int(key->word.size())) : strayKey);
}

JsonShape CSProJsonHandler::keptShape() const
{
    const Frame &frame = frames.back();
    if (!frame.isList)
        return key->shape;
    return frame.element ? JsonShape::Object : JsonShape::Text;
}

// `security.settings` for a key of an object that paths do not name. Without a word the key of the open list.
QString CSProJsonHandler::fullKey(const QString &word) const
{
    const auto isInPaths = [](const Frame &frame) { return !frame.isList && frame.element->isInPaths; };
    auto holder = std::find_if(frames.rbegin(), frames.rend(), isInPaths);
    QStringList words;
    for (auto frame = holder.base(); frame != frames.end(); ++frame)
        if (frame->key)
            words.append(QString::fromLatin1(frame->key->word.data(), int(frame->key->word.size())));
    if (!word.isNull())
        words.append(word);
    return words.join(QLatin1Char('.'));
}

void CSProJsonHandler::informOfConversion(const QString &value)
{
    findings.inform(
        "converted-type",
        QStringLiteral("a value of \"%1\" is not %2, but counts as %3").arg(keptKey(), nameOf(keptShape()), value),
        draft.address);
}

QString CSProJsonHandler::textOf(const char *bytes, int size)
{
    if (isAscii(bytes, size))
        return texts.text(QLatin1String(bytes, size));
    bool isDamaged = false;
    const QString text = decoding::fromUtf8(bytes, size, &isDamaged);
    if (isDamaged)
        findings.warn("bad-bytes",
                      QStringLiteral("a text has bytes that stand for no character; U+FFFD is in their place"),
                      draft.address);
    return texts.text(text);
}

} // namespace vanlayout
