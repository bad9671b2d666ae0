#ifndef LAYOUT_READ_CSPROJSONHANDLER_P_H
#define LAYOUT_READ_CSPROJSONHANDLER_P_H

#include "read/CSProJsonDraft_p.h"
#include "read/CSProJsonKeys_p.h"
#include "read/JsonSpelling_p.h"

#include "util/TextCache_p.h"

#include <rapidjson/reader.h>

#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace vanlayout
{

/// Takes the events of RapidJSON's reader and puts what they say into a draft, by the keys of the JSON form.
///
/// Nothing is lost: a value that has no place (of an unknown key, of a key that comes again, of another type than the
/// key wants, an entry of a list that is not usable) goes to the extras with its spelling, and each such case is
/// reported. Depth costs no stack: the form is
/// a few levels deep, and within such a value only the number of open parts is counted.
class CSProJsonHandler : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, CSProJsonHandler>
{
public:
    /// Levels of nesting within a value that is kept as its spelling.
    static constexpr int maxDepth = 1'000'000;

    /// \a stream is what is being read, from the beginning of \a content.
    CSProJsonHandler(const rapidjson::StringStream &stream, std::string_view content, CSProJsonDraft &target)
        : position(stream)
        , source(content)
        , draft(target)
        , findings(target.findings)
    {
    }

    // Events; false ends the reading.
    bool Null();
    bool Bool(bool value);
    bool RawNumber(const char *number, rapidjson::SizeType size, bool copy);
    bool String(const char *text, rapidjson::SizeType size, bool copy);
    bool Key(const char *text, rapidjson::SizeType size, bool copy);
    bool StartObject();
    bool EndObject(rapidjson::SizeType memberCount);
    bool StartArray();
    bool EndArray(rapidjson::SizeType elementCount);

    /// Whether reading ended at a value that is nested too deeply.
    bool isTooDeep() const { return openParts > maxDepth; }

private:
    // A value that is neither object nor list.
    struct Scalar {
        enum class Type { Null, Boolean, Number, Text };
        Type type;
        bool boolean;
        const char *bytes; ///< of a number or a text
        int size;
    };
    // Why a value is kept as its spelling.
    enum class Reason { UnknownKey, RepeatedKey, WrongType, UnknownWord, NoPlace };
    // An open object or list of the form.
    struct Frame {
        const JsonElement *element; ///< of the object, or of the objects in the list; null for a list of texts
        const JsonKey *key;         ///< of the object or list; null for an object in a list
        bool isList;
        size_t begin;                                            ///< offset of its first byte
        size_t extras;                                           ///< how many there were before it
        int nextKey = 0;                                         ///< where the next key is looked for first
        quint32 seen = 0;                                        ///< keys that came
        quint32 hasValue = 0;                                    ///< keys with a value other than null
        std::unique_ptr<std::set<std::string>> unknownKeys = {}; ///< that came
    };
    // A list or an object that is kept as its spelling, or a range, while it is read.
    enum class Skipping { None, Kept, Range };

    bool scalar(const Scalar &value);
    void member(const Scalar &value);
    void entry(const Scalar &value);
    void setText(const Scalar &value);
    void setInteger(const Scalar &value);
    void setNumber(const Scalar &value);
    void setBoolean(const Scalar &value);

    void findKey(const char *text, int size);
    bool isRepeatedUnknownKey(const char *text, int size);
    void begin(const JsonElement *element, const JsonKey *ofKey, bool isList);
    void markValue() { frames.back().hasValue |= 1U << (key - frames.back().element->keys); }
    void warnOfMissingKeys(const Frame &frame);
    void keepElement(const Frame &element);

    void skip(const Scalar &value);
    void beginSkipping();
    bool beginPart();
    bool endPart();
    Reason reasonToSkip() const;

    void keep(Reason reason, const Scalar &value);
    void keep(Reason reason, const QString &spelling);
    void report(Reason reason, const QString &word);
    QString keptKey() const;
    JsonShape keptShape() const;
    std::string_view sourceFrom(size_t begin) const { return source.substr(begin, position.Tell() + 1 - begin); }

    QString textOf(const char *bytes, int size);
    QString textOf(const Scalar &value) { return textOf(value.bytes, value.size); }
    QStringList openKeys() const;
    QString fullKey() const;
    QString fullKey(const QString &word) const;
    void informOfConversion(const QString &value);

    const rapidjson::StringStream &position;
    std::string_view source;
    CSProJsonDraft &draft;
    CSProJsonFindings &findings;
    TextCache texts;
    std::vector<Frame> frames;
    const JsonKey *key = nullptr; ///< of the value that comes next, in an object; null for a stray one
    QString strayKey;             ///< unknown, or came before
    Reason strayReason = Reason::UnknownKey;

    Skipping skipping = Skipping::None;
    size_t skippedFrom = 0;
    int openParts = 0; ///< of what is skipped
    QStringList rangeEnds;
    bool isRangeSound = true;
};

} // namespace vanlayout

#endif
