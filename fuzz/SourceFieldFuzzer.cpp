// The value of a source field in a line. The input is start and length in four bytes each, then the line.

#include "import/SourceField.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    int place[2] = {};
    if (size < sizeof(place))
        return 0;
    std::memcpy(place, data, sizeof(place));
    TVpSourceField field;
    field.start = place[0];
    field.length = place[1];
    const QString line
        = QString::fromUtf8(reinterpret_cast<const char *>(data + sizeof(place)), int(size - sizeof(place)));
    const QString value = field.getStringValue(line);
    delete field.typeNames;
    if (!value.isEmpty() && !line.contains(value))
        qFatal("a value that is not in the line");
    return 0;
}
