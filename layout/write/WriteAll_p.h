#ifndef LAYOUT_WRITE_WRITEALL_P_H
#define LAYOUT_WRITE_WRITEALL_P_H

#include <QIODevice>

namespace vanlayout
{

/// Writes all bytes, and returns whether the device accepted them. After a partial write the remaining bytes are
/// written in another call, because a file on a full disk reports its error only then.
inline bool writeAll(QIODevice &device, const char *bytes, qint64 size)
{
    while (size > 0) {
        const qint64 taken = device.write(bytes, size);
        if (taken <= 0)
            return false;
        bytes += taken;
        size -= taken;
    }
    return true;
}

} // namespace vanlayout

#endif
