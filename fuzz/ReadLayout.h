#ifndef FUZZ_READLAYOUT_H
#define FUZZ_READLAYOUT_H

#include "read/Reader.h"
#include "write/LayoutJson.h"

#include <QBuffer>

/// A device that accepts all bytes and discards them.
class Sink : public QIODevice
{
public:
    Sink() { open(QIODevice::WriteOnly); }

protected:
    qint64 readData(char * /*data*/, qint64 /*size*/) override { return -1; }
    qint64 writeData(const char * /*data*/, qint64 size) override { return size; }
};

/// Reads the layout of a file with these bytes and writes its JSON form. Ends the program if the layout violates a rule
/// for all layouts.
inline void readLayoutOf(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const vanlayout::Layout layout = vanlayout::readLayout(buffer, QStringLiteral("name"));
    if (!layout.isRead() && (layout.problems.size() != 1 || !layout.levels.isEmpty()))
        qFatal("a file without a layout has one problem and nothing else");
    for (const vanlayout::Problem &problem : layout.problems) {
        if (problem.message.isEmpty() || problem.message.contains(QLatin1Char('\n')))
            qFatal("a message is one line");
    }
    Sink sink;
    if (!(layout.isRead() ? vanlayout::writeLayoutJson : vanlayout::writeErrorJson)(layout, sink,
                                                                                    vanlayout::JsonStyle::Compact))
        qFatal("the JSON form is not written whole");
}

#endif
