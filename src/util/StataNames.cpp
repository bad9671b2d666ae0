#include "util/StataNames_p.h"

NameBounds stataNameBounds(const QByteArray &head)
{
    // Newer versions begin with a tag and the version as text, older ones with the version as a byte.
    const QByteArray begin("<stata_dta><header><release>");
    constexpr int digits = 3;
    constexpr NameBounds version104 = { 9, 12 };
    constexpr NameBounds upToVersion109 = { 9, 33 };
    constexpr NameBounds upToVersion117 = { 33, 33 };

    int version = head.isEmpty() ? 0 : static_cast<unsigned char>(head.at(0));
    if (head.startsWith(begin))
        version = head.mid(begin.size(), digits).toInt();
    if (version < 105)
        return version104;
    if (version < 110)
        return upToVersion109;
    return version < 118 ? upToVersion117 : widestStataNames;
}
