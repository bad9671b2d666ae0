// A map of a concordance, from its bytes to its decisions.

#include "read/ConcordMap.h"

#include <QBuffer>

using namespace vanlayout;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const QStringList files = { QStringLiteral("a/1.dcf"), QStringLiteral("b/1.dcf"), QStringLiteral("2.dcf") };
    const ConcordMap map = readConcordMap(buffer, files);
    if (map.decisions.size() != map.lines.size())
        qFatal("a decision has no line");
    for (const ConcordDecision &decision : map.decisions) {
        if (decision.one.round == decision.other.round || decision.one.item.isEmpty() || decision.other.item.isEmpty())
            qFatal("a decision is not about two items");
    }
    return 0;
}
