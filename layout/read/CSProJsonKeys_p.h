#ifndef LAYOUT_READ_CSPROJSONKEYS_P_H
#define LAYOUT_READ_CSPROJSONKEYS_P_H

#include "read/CSProJsonDraft_p.h"

#include <string_view>

namespace vanlayout
{

/// The type that the value of a key must have. Null is the same as an absent key for each.
enum class JsonShape {
    Text,    ///< a number is accepted as its spelling
    Integer, ///< the text of a number is accepted
    Number,  ///< likewise; it is set as its spelling
    Boolean, ///< the texts "true" and "false" are accepted
    Object,
    List,  ///< list of objects
    Texts, ///< list of texts
    Range, ///< list of texts whose spelling is kept, because it may have other entries
    Kept,  ///< any value; the layout has no member for it
};

struct JsonElement;

/// One key of one kind of objects. The functions that its shape does not need are null.
struct JsonKey {
    std::string_view word;
    JsonShape shape;
    bool isMust = false;
    JsonUse (*setText)(CSProJsonDraft &draft, const QString &text) = nullptr;
    void (*setInteger)(CSProJsonDraft &draft, int value) = nullptr;
    void (*setBoolean)(CSProJsonDraft &draft, bool value) = nullptr;
    const JsonElement *element = nullptr; ///< kind of the object, or of the objects in a list
    // Called at the beginning and the end of a list.
    void (*begin)(CSProJsonDraft &draft) = nullptr;
    void (*end)(CSProJsonDraft &draft) = nullptr;
};

/// One kind of objects.
struct JsonElement {
    const JsonKey *keys; ///< in the order in which CSPro writes them
    int keyCount;
    bool isInPaths; ///< whether paths name it; otherwise its key precedes its keys in extras: "security.settings"
    void (*begin)(CSProJsonDraft &draft) = nullptr;
    bool (*end)(CSProJsonDraft &draft) = nullptr; ///< false if the object is not usable
};

/// The object of a dictionary and, through its keys, all other objects: the keys of the JSON form.
const JsonElement &dictionaryElement();

} // namespace vanlayout

#endif
