#ifndef LAYOUT_READ_CSPROJSONHANDLER_P_H
#define LAYOUT_READ_CSPROJSONHANDLER_P_H

#include "read/CSProJsonDraft_p.h"
#include "read/CSProJsonKeys_p.h"
#include "read/JsonSpelling_p.h"

#include "util/TextCache_p.h"

#include <rapidjson/reader.h>

#include <memory>

namespace vanlayout
{

/// Takes the events of RapidJSON's reader and puts what they say into a draft, by the keys of the JSON form.
///
/// Nothing is lost: a value that has no place (of an unknown key, of a key that comes again, of another type than the
/// key wants) goes to the extras with its spelling, and each such case is reported. Depth costs no stack: the form is
/// a few levels deep, and within such a value only the number of open parts is counted.
class CSProJsonHandler : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, CSProJsonHandler>
{
public:
    /// Levels of nesting within a value that is kept as its spelling.
    static constexpr int maxDepth = 1'000'000;

    CSProJsonHandler(CSProJsonDraft &target, CSProJsonFindings &list)
        : draft(target)
        , findings(list)
    {
    }

    // Events; false ends the reading.
    bool Null();
    bool Bool(bool value);
    bool RawNumber(const char *spelling, rapidjson::SizeType size, bool copy);
    bool String(const char *text, rapidjson::SizeType size, bool copy);
    bool Key(const char *text, rapidjson::SizeType size, bool copy);
    bool StartObject();
    bool EndObject(rapidjson::SizeType memberCount);
    bool StartArray();
    bool EndArray(rapidjson::SizeType elementCount);

    /// Whether reading ended at a value that is nested too deeply.
    bool isTooDeep() const { return spelling.depth() > maxDepth; }

private:
    // A value that is neither object nor list.
    struct Scalar {
        enum Type { Null, Boolean, Number, Text };
        Type type;
        bool boolean;
        const char *bytes; ///< of a number or a text
        int size;
    };
    // Why a value is kept as its spelling.
    enum class Reason { None, UnknownKey, RepeatedKey, WrongType, Inexact, UnknownWord, NoPlace, Range };
    // An open object or list of the form.
    struct Frame {
        const JsonElement *element; ///< of the object, or of the objects in the list; null for a list of texts
        const JsonKey *key;         ///< of the object or list; null for an object in a list
        bool isList = false;
        int nextKey = 0;    ///< where the next key is looked for first
        quint32 seen = 0;   ///< keys that came
        quint32 usable = 0; ///< keys with a value other than null
        std::unique_ptr<QSet<QByteArray>> unknownKeys = {};
    };

    bool scalar(const Scalar &value);
    void member(const Scalar &value);
    void entry(const Scalar &value);
    void setText(const Scalar &value);
    void setInteger(const Scalar &value);
    void setNumber(const Scalar &value);
    void setBoolean(const Scalar &value);

    void findKey(const char *text, int size);
    bool isRepeatedUnknownKey(const char *text, int size);
    void beginObject(const JsonElement &element, const JsonKey *key);
    void beginList(const JsonKey &key);
    void warnOfMissingKeys(const Frame &frame);

    void keep(Reason why, const Scalar &value);
    void beginKeeping(Reason why);
    void write(const Scalar &value);
    bool endPartOfKept();
    void endKeeping();
    void addKept(const QString &value);
    QString keptKey() const;
    JsonShape keptShape() const;

    QString textOf(const char *bytes, int size);
    QString textOf(const Scalar &value) { return textOf(value.bytes, value.size); }
    QString fullKey(const QString &word) const;
    void informOfConversion(const QString &value);

    CSProJsonDraft &draft;
    CSProJsonFindings &findings;
    TextCache texts;
    std::vector<Frame> frames;
    const JsonKey *key = nullptr; ///< of the value that comes next, in an object
    QString strayKey;             ///< the same for a key that is unknown or came before
    Reason strayReason = Reason::None;
    JsonSpelling spelling;
    Reason reason = Reason::None; ///< of the value that is being spelled
    QStringList rangeEnds;
    bool isRangeSound = true;
};

} // namespace vanlayout

#endif
