#ifndef VANLAYOUT_JSONDEVICE_H
#define VANLAYOUT_JSONDEVICE_H

#include "Json.h"

#include <QIODevice>

/// What RapidJSON writes to: a device, which is handed large pieces.
class JsonDevice
{
public:
    using Ch = char;

    explicit JsonDevice(QIODevice &output)
        : device(output)
    {
    }

    void Put(char byte)
    {
        piece[size++] = byte;
        if (size == pieceSize)
            Flush();
    }

    void Flush()
    {
        device.write(piece, size);
        size = 0;
    }

private:
    static constexpr int pieceSize = 1 << 16;

    QIODevice &device;
    char piece[pieceSize];
    int size = 0;
};

using DeviceJson = rapidjson::PrettyWriter<JsonDevice>;

/// Writes one document, laid out for a person. \a content is handed the writer.
template <typename Content> void writeJsonDocument(QIODevice &device, Content content)
{
    constexpr unsigned indentation = 2;
    JsonDevice stream(device);
    DeviceJson json(stream);
    json.SetIndent(' ', indentation);
    content(json);
    stream.Put('\n');
    stream.Flush();
}

#endif
