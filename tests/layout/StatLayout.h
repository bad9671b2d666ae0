#ifndef LAYOUT_STATLAYOUT_H
#define LAYOUT_STATLAYOUT_H

#include "StatFile.h"
#include "read/Reader.h"

#include <QBuffer>
#include <QByteArray>

#include <ctime>

/// The bytes of a generated file.
inline QByteArray bytesOf(StatFile &file, int rows = 1)
{
    return QByteArray::fromStdString(file.bytes(rows));
}

/// The layout of a file with these bytes.
inline vanlayout::Layout layoutOf(QByteArray bytes, const vanlayout::ReadOptions &options = {})
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return vanlayout::readLayout(buffer, QStringLiteral("file"), options);
}

inline vanlayout::Layout layoutOf(StatFile &file, int rows = 1)
{
    return layoutOf(bytesOf(file, rows));
}

inline const QVector<vanlayout::Item> &itemsOf(const vanlayout::Layout &layout)
{
    static const QVector<vanlayout::Item> none;
    return layout.levels.isEmpty() ? none : layout.levels.constFirst().records.constFirst().items;
}

/// Sets the time zone of the process while the object exists.
class TimeZone
{
public:
    explicit TimeZone(const char *name)
        : before(qgetenv("TZ"))
        , wasSet(qEnvironmentVariableIsSet("TZ"))
    {
        qputenv("TZ", name);
        tzset();
    }
    ~TimeZone()
    {
        if (wasSet)
            qputenv("TZ", before);
        else
            qunsetenv("TZ");
        tzset();
    }
    TimeZone(const TimeZone &) = delete;
    TimeZone &operator=(const TimeZone &) = delete;

private:
    QByteArray before;
    bool wasSet;
};

#endif
