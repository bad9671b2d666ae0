#include "Progress.h"

#include "Printable.h"

#include <chrono>
#include <cstdio>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace
{

using namespace std::chrono_literals;

constexpr int standardError = 2;
constexpr auto patience = 2s;
constexpr auto step = 250ms;

std::mutex terminalMutex;
bool isOnTerminal = false;

void clearLine()
{
    if (isOnTerminal)
        std::fputs("\r\033[K", stderr);
    isOnTerminal = false;
}

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
    if (isTerminal(standardError) && !isOutputShown)
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
    line = printable(name + place).toLocal8Bit();
}

// Runs in a thread of its own: one file alone may take long.
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
