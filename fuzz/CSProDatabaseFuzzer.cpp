// A CSPro data file, from its bytes to the exact layout of the dictionary in it and the JSON form of that.

#include "ReadLayout.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // The format is determined by content; with the first bytes of a database, each input is read as one.
    constexpr int magicSize = 16;
    QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    bytes.replace(0, magicSize, QByteArray("SQLite format 3", magicSize));
    readLayoutOf(bytes);
    return 0;
}
