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
    if (begin.startsWith("\xEF\xBB\xBF"))
        style.mark = CSProTextStyle::Mark::Present;
    else if (layout.encoding == QLatin1String("utf-8"))
        style.mark = CSProTextStyle::Mark::Absent; // another encoding becomes UTF-8, which CSPro knows by its mark
    begin.replace('\0', QByteArray());             // of UTF-16
    const int lineEnd = begin.indexOf('\n');
    if (lineEnd == 0 || (lineEnd > 0 && begin.at(lineEnd - 1) != '\r'))
        style.lineEnd = CSProTextStyle::LineEnd::Lf;
    return style;
}
