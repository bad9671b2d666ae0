// Prints the DDI document of one file: print_ddi FILE [ipums].

#include "read/Reader.h"
#include "write/Ddi.h"

#include <QFile>

#include <cstdio>

using namespace vanlayout;

int main(int argc, char **argv)
{
    QFile output;
    if (argc < 2 || !output.open(stdout, QIODevice::WriteOnly))
        return 1;
    const Layout layout = readLayout(QString::fromUtf8(argv[1]));
    DdiOptions options;
    if (argc > 2 && qstrcmp(argv[2], "ipums") == 0)
        options.profile = DdiProfile::Ipums;
    return layout.isRead() && writeDdi(layout, output, options) ? 0 : 1;
}
