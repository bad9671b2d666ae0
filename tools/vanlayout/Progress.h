#ifndef VANLAYOUT_PROGRESS_H
#define VANLAYOUT_PROGRESS_H

#include <QString>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

/// Whether a descriptor is a terminal; false where the system has none.
bool isTerminal(int descriptor);

/// A line on the terminal at standard error that names the file in work, for work of more than two seconds. It goes
/// when this object does or a signal ends the process, and makes room for each other line that is written to standard
/// error. A name that is longer than a line of the terminal is cut.
///
/// Nothing is shown where standard error is no terminal, or where \a isOutputShown says that the answer itself goes to
/// the terminal. One object at a time.
class Progress
{
public:
    explicit Progress(bool isOutputShown);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    /// Has the line name a file, and its number among all of them, from 1, where there are several.
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

/// Runs \a write while no progress is on the terminal.
void writeWithoutProgress(const std::function<void()> &write);

#endif
