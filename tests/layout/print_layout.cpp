// Prints the JSON form of the layout of each file, one object per line; for a file without a layout, the reason.

#include "read/Reader.h"
#include "write/LayoutJson.h"

#include <QFile>

#include <cstdio>

using namespace vanlayout;

int main(int argc, char **argv)
{
    QFile output;
    if (!output.open(stdout, QIODevice::WriteOnly))
        return 1;
    for (int index = 1; index < argc; ++index) {
        const Layout layout = readLayout(QString::fromUtf8(argv[index]));
        if (!(layout.isRead() ? writeLayoutJson : writeErrorJson)(layout, output, JsonStyle::Compact))
            return 1;
    }
    return 0;
}
