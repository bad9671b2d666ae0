#ifndef VANLAYOUT_PROGRESS_H
#define VANLAYOUT_PROGRESS_H

#include <QString>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

/// True if a descriptor is a terminal; false on systems without terminals.
bool isTerminal(int descriptor);

/// A line on the terminal at standard error that names the current file, shown when work takes more than two seconds.
/// It is removed when this object is destroyed or a signal ends the process, and while another line is written to
/// standard error. A name that is longer than a line of the terminal is cut.
///
/// Nothing is shown if standard error is not a terminal, or if \a isOutputShown states that the output goes to the
/// terminal. Only one object may exist at a time.
class Progress
{
public:
    explicit Progress(bool isOutputShown = false);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    /// Sets the file named in the line, and its 1-based number if there are several.
    void begin(const QString &file, int number = 1, int count = 1);

private:
    void show();
    void paint();

    std::mutex mutex;
    std::condition_variable wake;
    QByteArray line;
    bool isOver = false;
    std::thread painter;
};

/// Runs \a write while the progress line is removed.
void writeWithoutProgress(const std::function<void()> &write);

#endif
