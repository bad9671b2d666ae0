#include "Records.h"

#include "import/SourceField.h"

#include <QSet>

namespace
{

// Where the name ends: at a "=", or behind all where there is none.
int endOfName(const QString &record, const QSet<QString> &groups)
{
    const int last = record.lastIndexOf(QLatin1Char('='));
    for (int sign = last; sign >= 0; sign = record.leftRef(sign).lastIndexOf(QLatin1Char('='))) {
        if (groups.contains(record.left(sign)))
            return sign;
    }
    return last < 0 ? record.size() : last;
}

} // namespace

QVector<RecordType> recordTypesOf(const Layout &layout)
{
    QSet<QString> groups;
    for (const TVpSourceField *field : *layout.provider.getFields())
        groups.insert(field->group);
    QVector<RecordType> types;
    const int count = layout.importer->getGroupCount();
    for (int i = 0; i < count; ++i) {
        const QString record = layout.importer->getGroupName(i);
        const int end = endOfName(record, groups);
        types.append({ record.left(end), record.mid(end + 1) });
    }
    return types;
}
