#include "read/Reader.h"
#include "vanlayout_version.h"
#include "write/LayoutJson.h"

#include <QBuffer>

#include <cstdio>

static_assert(VANLAYOUT_VERSION >= VANLAYOUT_VERSION_CHECK(0, 1, 0));

int main(int, char **arguments)
{
    std::printf("%d.%d.%d %s\n", VANLAYOUT_VERSION_MAJOR, VANLAYOUT_VERSION_MINOR, VANLAYOUT_VERSION_PATCH,
                VANLAYOUT_VERSION_STRING);
    const vanlayout::Layout layout = vanlayout::readLayout(QString(arguments[1]));
    for (const vanlayout::Level &level : layout.levels) {
        for (const vanlayout::Record &record : level.records) {
            for (const vanlayout::Item &item : record.items)
                std::printf("%s %s %d %d\n", qPrintable(item.name), qPrintable(item.type), item.start, item.length);
        }
    }
    QBuffer json;
    json.open(QIODevice::WriteOnly);
    return vanlayout::writeLayoutJson(layout, json) && layout.isRead() ? 0 : 1;
}
