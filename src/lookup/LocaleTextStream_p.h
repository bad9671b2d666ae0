#ifndef LOOKUP_LOCALETEXTSTREAM_P_H
#define LOOKUP_LOCALETEXTSTREAM_P_H

#include <QIODevice>
#include <QTextCodec>
#include <QTextStream>

#include <algorithm>

/// The bytes of another device, converted from the encoding of the locale to UTF-8. Does not own the other device. Only
/// LocaleTextStream for Qt 6 uses it; it is compiled with Qt 5 too, so that it is tested and analysed there.
class LocaleToUtf8 : public QIODevice
{
public:
    explicit LocaleToUtf8(QIODevice &device)
        : source(device)
        , decoder(QTextCodec::codecForLocale())
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }
    bool atEnd() const override { return waiting.isEmpty() && source.atEnd(); }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        // The last bytes of a block may be only the beginning of a character.
        while (waiting.isEmpty()) {
            const QByteArray block = source.read(blockSize);
            if (block.isEmpty())
                return 0;
            waiting = decoder.toUnicode(block).toUtf8();
        }
        const qint64 size = std::min<qint64>(maxSize, waiting.size());
        std::copy_n(waiting.constData(), size, data);
        waiting.remove(0, int(size)); // at most the size of a block in UTF-8
        return size;
    }
    qint64 writeData(const char * /*data*/, qint64 /*size*/) override { return -1; }

private:
    static constexpr qint64 blockSize = 1 << 12;

    QIODevice &source;
    QTextDecoder decoder;
    QByteArray waiting;
};

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)

/// Text stream on a file whose byte-order mark determines the encoding. A file without a mark is in the encoding of the
/// locale, which is that of `QTextCodec::codecForLocale`.
using LocaleTextStream = QTextStream;

#else

/// Text stream on a file whose byte-order mark determines the encoding. A file without a mark is in the encoding of the
/// locale, which is that of `QTextCodec::codecForLocale`. The text stream of Qt 6 itself reads such a file as UTF-8.
class LocaleTextStream : public QTextStream
{
public:
    explicit LocaleTextStream(QIODevice *file)
        : converted(*file)
    {
        setDevice(isInUnicode(*file) ? file : &converted);
    }

private:
    static bool isInUnicode(QIODevice &file)
    {
        constexpr int mibUtf8 = 106;
        constexpr qint64 longestMark = 4;
        return QTextCodec::codecForLocale()->mibEnum() == mibUtf8
            || QTextCodec::codecForUtfText(file.peek(longestMark), nullptr);
    }

    LocaleToUtf8 converted;
};

#endif

#endif
