#ifndef UTIL_BUFFEREDDEVICE_P_H
#define UTIL_BUFFEREDDEVICE_P_H

#include "util/BufferedSource_p.h"

#include <QString>

class QIODevice;

/// A device of Qt's, which is read whatever path the parser is given. A file of the system is read past Qt's buffer,
/// which would be filled anew at each place.
class BufferedDevice : public BufferedSource
{
public:
    /// \a source can seek, and its file begins where it is now. It must outlive this object.
    explicit BufferedDevice(QIODevice &source);

    /// The device's words for its first failure; empty where there was none.
    const QString &problem() const { return firstProblem; }
    /// Whether the parser asked for the file's bytes far more often than a file needs: its parts lead back to each
    /// other. From then on no bytes are answered.
    bool isReadOverAndOver() const { return hasAnsweredMost(); }

private:
    bool openPath(const char *path) override;
    qint64 readFrom(qint64 place, char *target, qint64 size);
    qint64 readAt(qint64 place, char *target, qint64 size) override;

    QIODevice &device;
    int descriptor; ///< of a file of the system; -1 for another device
    qint64 start;
    QString firstProblem;
};

#endif
