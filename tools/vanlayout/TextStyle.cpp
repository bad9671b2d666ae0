#include "TextStyle.h"

#include <QFile>

using namespace vanlayout;

CSProTextStyle styleOf(const Layout &layout)
{
    CSProTextStyle style;
    QFile file(layout.file);
    if (layout.format != Format::CSProText || !layout.container.isEmpty() || layout.file == QLatin1String("-")
        || !file.open(QIODevice::ReadOnly))
        return style;
    constexpr int longestFirstLine = 4096;
    QByteArray begin = file.read(longestFirstLine);
    begin.replace('\0', QByteArray()); // of UTF-16
    const int lineEnd = begin.indexOf('\n');
    if (lineEnd == 0 || (lineEnd > 0 && begin.at(lineEnd - 1) != '\r'))
        style.lineEnd = CSProTextStyle::LineEnd::Lf;
    if (!begin.startsWith("\xEF\xBB\xBF") && layout.encoding == QLatin1String("utf-8"))
        style.mark = CSProTextStyle::Mark::Absent;
    return style;
}
