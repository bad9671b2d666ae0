#ifndef UTIL_BUFFEREDDEVICE_P_H
#define UTIL_BUFFEREDDEVICE_P_H

#include "util/BufferedSource_p.h"

#include <QString>

class QIODevice;

/// Lets ReadStat read from a QIODevice, whatever path the parser is given. A file of the system is read without Qt's
/// buffer, which would be filled again at each position.
class BufferedDevice : public BufferedSource
{
public:
    /// \a source can seek, and the file begins at its current position. It must outlive this object.
    explicit BufferedDevice(QIODevice &source);

    /// Returns the device's message for its first failure; empty if there was none.
    const QString &problem() const { return firstProblem; }
    /// Returns whether the parser requested the file's bytes far more often than a file needs, since parts of the file
    /// refer back to each other. From then on the parser gets no bytes.
    bool isReadOverAndOver() const { return hasDeliveredMax(); }

private:
    bool openPath(const char *path) override;
    qint64 readFrom(qint64 place, char *target, qint64 size);
    qint64 readAt(qint64 place, char *target, qint64 size) override;

    QIODevice &device;
    int descriptor; ///< descriptor of a file of the system; -1 for any other device
    qint64 start;
    QString firstProblem;
};

#endif
