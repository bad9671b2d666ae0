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

/// Handles the events of RapidJSON's reader: sets the values of the draft by the keys of the JSON form.
///
/// Nothing is lost: a value without a place (of an unknown key, of a repeated key, of a wrong type, or an entry of a
/// list that is not usable) is kept in the extras in its JSON spelling, and each such case is reported. Nesting uses no
/// stack: the form is a few levels deep, and within a value that is kept only the number of open parts is counted.
class CSProJsonHandler : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, CSProJsonHandler>
{
public:
    /// Max levels of nesting within a value that is kept in its spelling.
    static constexpr int maxDepth = 1'000'000;

    /// \a elementLines receives the lines of the elements unless it is null. \a stream is the stream that the reader
    /// reads, from the beginning of \a content. Both, and \a target, must outlive this object.
    CSProJsonHandler(const rapidjson::StringStream &stream, std::string_view content, CSProJsonDraft &target,
                     ElementLines *elementLines)
        : position(stream)
        , source(content)
        , draft(target)
        , findings(target.findings)
        , lines(elementLines)
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
    // A value that is neither an object nor a list.
    struct Scalar {
        enum class Type { Null, Boolean, Number, Text };
        Type type;
        bool boolean;
        const char *bytes; ///< bytes of a number or a text
        int size;
    };
    // The reason why a value is kept in its spelling.
    enum class Reason { UnknownKey, RepeatedKey, WrongType, UnknownWord, NoPlace };
    enum class Shape { Object, List };
    // An open object or list of the form.
    struct Frame {
        const JsonElement *element; ///< kind of the object, or of the objects in the list; null for a list of texts
        const JsonKey *key;         ///< key of the object or list; null for an object in a list
        Shape shape;
        size_t begin;                                            ///< offset of its first byte
        size_t extras;                                           ///< number of extras before it
        int nextKey = 0;                                         ///< index of the key that is expected next
        quint32 seen = 0;                                        ///< bits of the keys that occurred
        quint32 hasValue = 0;                                    ///< bits of the keys with a value other than null
        std::unique_ptr<std::set<std::string>> unknownKeys = {}; ///< unknown keys that occurred

        bool isList() const { return shape == Shape::List; }
    };
    // The state within a list or object that is kept in its spelling, or within a range.
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
    void begin(const JsonElement *element, const JsonKey *ofKey, Shape shape);
    int currentLine();
    void setProblemLine();
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
    ElementLines *lines;
    size_t countedUntil = 0; ///< offset before which the lines are counted
    int line = 1;            ///< the line there
    TextCache texts;
    std::vector<Frame> frames;
    const JsonKey *key = nullptr; ///< key of the next value in an object; null for an unknown or repeated key
    QString strayKey;             ///< that unknown or repeated key
    Reason strayReason = Reason::UnknownKey;

    Skipping skipping = Skipping::None;
    size_t skippedFrom = 0;
    int openParts = 0; ///< number of open objects and lists of the skipped value
    QStringList rangeEnds;
    bool isRangeSound = true;
};

} // namespace vanlayout

#endif
