// The lines of one value set, of a number or a text. The first byte selects which of the two, and is also the answer to
// the question about decimals.

#include "cspro/CSPro_p.h"

#include <QStringList>

#include <cstddef>
#include <cstdint>
#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const bool isText = data[0] & 1;
    const DecimalAnswer answer = data[0] & 2 ? DecimalAnswer::yesToAll : DecimalAnswer::noToAll;
    QStringList lines = { "[Item]", "Name=A", "Len=4", isText ? "DataType=Alpha" : "DataType=Numeric", "[ValueSet]" };
    lines += QString::fromUtf8(reinterpret_cast<const char *>(data + 1), int(size - 1)).split(QLatin1Char('\n'));
    TCSPro dictionary;
    dictionary.ownAnswer = [answer](const DecimalQuestion & /*question*/) { return answer; };
    ReadReport report;
    dictionary.setReport(data[0] & 4 ? &report : nullptr);
    try {
        dictionary.parseLines(&lines);
    } catch (VpErrorManager *error) {
        delete error;
    }
    cspro::freeContents(dictionary);
    return 0;
}
