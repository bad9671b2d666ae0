#ifndef LAYOUT_MADELAYOUT_H
#define LAYOUT_MADELAYOUT_H

#include "model/Layout.h"

#include <QBuffer>
#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <limits>

/// Short functions that make layouts for tests.
namespace made
{

using namespace vanlayout;

inline Labels labels(const QString &text)
{
    return { { { QString(), text } } };
}

inline Value value(const QString &code, const QString &label = QString(), Special special = Special::None)
{
    Value made;
    made.ranges = { { code, QString() } };
    made.labels = label.isEmpty() ? Labels() : labels(label);
    made.special = special;
    return made;
}

inline Value range(const QString &from, const QString &to, const QString &label = QString())
{
    Value made = value(from, label);
    made.ranges[0].to = to;
    return made;
}

inline ValueSet valueSet(const QVector<Value> &values)
{
    ValueSet set;
    set.name = QStringLiteral("VS1");
    set.values = values;
    return set;
}

/// A numeric item of CSPro, or a text with the type "alpha".
inline Item item(const QString &name, int length = 2, const QVector<Value> &values = {},
                 const QString &type = itemtype::numeric())
{
    Item made;
    made.name = name;
    made.type = type;
    made.length = length;
    if (!values.isEmpty())
        made.valueSets = { valueSet(values) };
    return made;
}

inline Item text(const QString &name, int length = 2, const QVector<Value> &values = {})
{
    return item(name, length, values, itemtype::alpha());
}

/// A numeric variable of a statistical file.
inline Item stored(const QString &name, const QString &format = QStringLiteral("F8.0"),
                   const QVector<Value> &values = {}, Storage storage = Storage::Double)
{
    Item made = item(name, 0, values);
    made.storage = storage;
    made.format = format;
    return made;
}

/// An item that is captured as a date.
inline Item captured(Item made, const QString &dateFormat)
{
    made.capture = Capture{ QStringLiteral("date"), dateFormat };
    return made;
}

inline Record record(const QString &name, const QVector<Item> &items = {}, int maximum = 1, bool required = true)
{
    Record made;
    made.name = name;
    made.items = items;
    made.maximum = maximum;
    made.required = required;
    return made;
}

inline Level level(const QVector<Item> &ids, const QVector<Record> &records)
{
    Level made;
    made.ids = ids;
    made.records = records;
    return made;
}

/// One level with the id ID and one record R of these items.
inline Layout layout(const QVector<Item> &items)
{
    Layout made;
    made.levels = { level({ item(QStringLiteral("ID")) }, { record(QStringLiteral("R"), items) }) };
    return made;
}

/// The bytes that a writer writes; empty if it reports a failure.
template <typename Write, typename... Options>
QByteArray written(Write write, const Layout &layout, const Options &...options)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return write(layout, buffer, options...) ? buffer.data() : QByteArray();
}

/// A device that accepts no bytes.
class FullDevice : public QIODevice
{
protected:
    qint64 readData(char * /*data*/, qint64 /*size*/) override { return -1; }
    qint64 writeData(const char * /*data*/, qint64 /*size*/) override { return -1; }
};

} // namespace made

#endif
