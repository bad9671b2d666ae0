// Lists the variables of census and survey data files: CSPro dictionaries in both forms, CSPro data files, SPSS, Stata
// and SAS files. The content of a file determines its format.

#include "read/Reader.h"

#include <QFile>
#include <QTextStream>

using vanlayout::Item;
using vanlayout::Layout;
using vanlayout::Level;
using vanlayout::Record;

namespace
{

void print(const QVector<Item> &items, const QString &record, QTextStream &out)
{
    for (const Item &item : items) {
        out << record << '\t' << item.name << '\t' << item.type << '\t' << item.start << '\t' << item.length << '\t'
            << item.labels.primary() << '\n';
    }
}

bool print(const QString &path, QTextStream &out)
{
    const Layout layout = vanlayout::readLayout(path);
    if (!layout.isRead()) {
        out << path << ": " << layout.error()->message << '\n';
        return false;
    }
    out << path << ": " << layout.labels.primary() << '\n';
    for (const Level &level : layout.levels) {
        print(level.ids, QStringLiteral("(ids)"), out);
        for (const Record &record : level.records)
            print(record.items, record.name, out);
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    QTextStream out(stdout);
    bool isFine = true;
    for (int i = 1; i < argc; ++i)
        isFine = print(QFile::decodeName(argv[i]), out) && isFine;
    return isFine ? 0 : 1;
}
