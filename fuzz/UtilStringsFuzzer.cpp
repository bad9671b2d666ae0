// Words of a line, and line breaks. The input is separator, qualifier and the line, each on its own row.

#include "util/UtilStrings.h"

#include <QStringList>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString input = QString::fromUtf8(reinterpret_cast<const char *>(data), int(size));
    const QString separator = input.section(QLatin1Char('\n'), 0, 0);
    const QString qualifier = input.section(QLatin1Char('\n'), 1, 1);
    const QString line = input.section(QLatin1Char('\n'), 2);
    int position = 0;
    for (int words = 0; position >= 0; ++words) {
        if (words > line.size() + 1)
            qFatal("a line never ends");
        UtilStrings::GetWordSeparator(line, position, separator, qualifier);
    }
    // An arbitrary index.
    position = size >= sizeof(position) ? int(data[0] | data[1] << 8 | data[2] << 16 | uint(data[3]) << 24) : -1;
    UtilStrings::GetWordSeparator(line, position, separator, qualifier);
    UtilStrings::returnLineBreak(line);
    return 0;
}
