#ifndef STATISTICAL_BUFFEREDFILE_P_H
#define STATISTICAL_BUFFEREDFILE_P_H

#include "util/BufferedSource_p.h"

namespace statistical
{

/// A file of the system. Answers what the system would answer, so that a parse ends the same way. For regular files
/// only.
class BufferedFile : public BufferedSource
{
public:
    ~BufferedFile() override;

    /// \a path is in the encoding of the system.
    bool open(const char *path);
    /// The number of the system's error at the first failure to read since the file was opened; 0 where there was none.
    int error() const { return firstError; }

private:
    bool openPath(const char *path) override { return open(path); }
    void close() override;
    bool canGoTo(qint64 place) override;
    qint64 readAt(qint64 place, char *target, qint64 size) override;

    int descriptor = -1; ///< not a `QFile`, which warns of a place that the system refuses
    int firstError = 0;
};

} // namespace statistical

#endif
