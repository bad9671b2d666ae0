#include "Progress.h"

#include "Columns.h"
#include "LocaleText.h"
#include "Printable.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>

#ifdef Q_OS_UNIX
#include <csignal>
#include <unistd.h>
#endif

namespace
{

using namespace std::chrono_literals;

constexpr int standardError = 2;
constexpr auto patience = 2s;
constexpr auto step = 250ms;

constexpr char lineEraser[] = "\r\033[K";

std::mutex terminalMutex;
std::atomic<bool> isOnTerminal = false;

void clearLine()
{
    if (isOnTerminal)
        std::fputs(lineEraser, stderr);
    isOnTerminal = false;
}

#ifdef Q_OS_UNIX

// The process is terminated by the signal as usual.
void clearLineAndEnd(int signal)
{
    if (isOnTerminal) {
        const ssize_t written = write(standardError, lineEraser, sizeof lineEraser - 1);
        Q_UNUSED(written)
    }
    raise(signal);
}

// An ignored signal remains ignored.
void clearLineBeforeSignalsEndTheProcess()
{
    for (const int signal : { SIGINT, SIGTERM, SIGHUP }) {
        struct sigaction action = {};
        if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL)
            continue;
        action.sa_handler = clearLineAndEnd;
        action.sa_flags = int(SA_RESETHAND);
        sigaction(signal, &action, nullptr);
    }
}

#endif

} // namespace

bool isTerminal(int descriptor)
{
#ifdef Q_OS_UNIX
    return isatty(descriptor) != 0;
#else
    Q_UNUSED(descriptor)
    return false;
#endif
}

Progress::Progress(bool isOutputShown)
{
    if (!isTerminal(standardError) || isOutputShown)
        return;
#ifdef Q_OS_UNIX
    clearLineBeforeSignalsEndTheProcess();
#endif
    painter = std::thread([this] { show(); });
}

Progress::~Progress()
{
    if (!painter.joinable())
        return;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        isOver = true;
    }
    wake.notify_one();
    painter.join();
    writeWithoutProgress([] { std::fflush(stderr); });
}

void Progress::begin(const QString &file, int number, int count)
{
    if (!painter.joinable())
        return;
    const QString place = count > 1 ? QStringLiteral(" (%1 of %2)").arg(number).arg(count) : QString();
    const std::lock_guard<std::mutex> lock(mutex);
    const QString name = file == QLatin1String("-") ? QStringLiteral("standard input") : file;
    const int width = widthOfTerminal(standardError);
    const int room = width > 0 ? std::max(width - columnsOf(place) - 1, 1) : 0;
    line = toLocale(cutToColumns(printable(name), room) + place);
}

// Runs in a separate thread: a single file can take long.
void Progress::show()
{
    std::unique_lock<std::mutex> lock(mutex);
    for (auto pause = std::chrono::milliseconds(patience); !wake.wait_for(lock, pause, [this] { return isOver; });
         pause = step)
        paint();
}

void Progress::paint()
{
    const std::lock_guard<std::mutex> terminal(terminalMutex);
    if (line.isEmpty())
        return;
    std::fprintf(stderr, "\r%s\033[K", line.constData());
    std::fflush(stderr);
    isOnTerminal = true;
}

void writeWithoutProgress(const std::function<void()> &write)
{
    const std::lock_guard<std::mutex> terminal(terminalMutex);
    clearLine();
    write();
}
