#ifndef VANLAYOUT_DEVICESTREAM_H
#define VANLAYOUT_DEVICESTREAM_H

#include <QIODevice>

#include <vector>

/// An output stream of RapidJSON that hands a device large pieces. The last piece is written by Flush() alone.
class DeviceStream
{
public:
    using Ch = char;

    explicit DeviceStream(QIODevice &output)
        : device(output)
        , piece(pieceSize)
    {
    }

    void Put(char byte)
    {
        piece[used++] = byte;
        if (used == pieceSize)
            Flush();
    }

    void Flush()
    {
        device.write(piece.data(), qint64(used));
        used = 0;
    }

private:
    static constexpr size_t pieceSize = 1 << 16;

    QIODevice &device;
    std::vector<char> piece;
    size_t used = 0;
};

#endif
