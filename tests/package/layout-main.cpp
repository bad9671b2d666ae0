#include "read/Reader.h"
#include "write/LayoutJson.h"

#include <QBuffer>

#include <cstdio>

int main(int, char **arguments)
{
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
