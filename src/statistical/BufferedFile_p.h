#ifndef STATISTICAL_BUFFEREDFILE_P_H
#define STATISTICAL_BUFFEREDFILE_P_H

#include "util/BufferedSource_p.h"

namespace statistical
{

/// Lets ReadStat read a regular file of the system. It returns the results of the system, so that a parse ends in the
/// same way as with ReadStat's own input.
class BufferedFile : public BufferedSource
{
public:
    ~BufferedFile() override;

    /// \a path is in the encoding of the system.
    bool open(const char *path);
    /// Returns the system's error number for the first failure to read since the file was opened; 0 if there was none.
    int error() const { return firstError; }

private:
    bool openPath(const char *path) override { return open(path); }
    void close() override;
    bool canGoTo(qint64 place) override;
    qint64 readAt(qint64 place, char *target, qint64 size) override;

    int descriptor = -1; ///< not a `QFile`, which writes a warning for a position that the system refuses
    int firstError = 0;
};

} // namespace statistical

#endif
