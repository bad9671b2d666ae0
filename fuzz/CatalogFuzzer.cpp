// A SAS catalog of label sets for a data set that has formats.

#include "FuzzedFile.h"
#include "StatFile.h"
#include "read/Reader.h"

#include <QBuffer>

namespace
{

QByteArray dataSet()
{
    StatFile file(StatFile::sas7bdat);
    file.variable("SEX", READSTAT_TYPE_DOUBLE, "", "YESNO");
    file.text("NAME", 5, "", "$NAME");
    return QByteArray::fromStdString(file.bytes());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static FuzzedFile catalog;
    static QByteArray bytes = dataSet();
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const vanlayout::Layout layout
        = vanlayout::readLayout(buffer, QStringLiteral("name"), { catalog.holding(data, size) });
    // The data set is read even if the catalog is damaged.
    if (!layout.isRead() || layout.levels.constFirst().records.constFirst().items.size() != 2)
        qFatal("the data set is not read");
    return 0;
}
