#ifndef SUPPORT_PSEUDOTERMINAL_H
#define SUPPORT_PSEUDOTERMINAL_H

#include <QByteArray>
#include <QString>

#include <fcntl.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <unistd.h>

/// A terminal to which a process can write. A test can read the output.
class PseudoTerminal
{
public:
    PseudoTerminal()
        : screen(posix_openpt(O_RDWR | O_NOCTTY))
    {
        if (screen < 0 || grantpt(screen) != 0 || unlockpt(screen) != 0)
            return;
        fcntl(screen, F_SETFL, O_NONBLOCK);
        if (const char *name = ptsname(screen)) {
            fileName = name;
            end = open(name, O_RDWR | O_NOCTTY);
        }
    }
    ~PseudoTerminal()
    {
        close(end);
        close(screen);
    }
    PseudoTerminal(const PseudoTerminal &) = delete;
    PseudoTerminal &operator=(const PseudoTerminal &) = delete;

    bool isOpen() const { return end >= 0; }

    /// The end that a process writes to: its name, and its descriptor in this process.
    QString name() const { return QString::fromLocal8Bit(fileName); }
    int descriptor() const { return end; }

    /// Sets the width of the terminal in columns.
    bool setWidth(unsigned short columns) const
    {
        winsize size = {};
        size.ws_col = columns;
        size.ws_row = 24;
        return ioctl(end, TIOCSWINSZ, &size) == 0;
    }

    /// Returns the output since the last call.
    QByteArray taken() const
    {
        QByteArray bytes;
        char piece[1 << 12];
        for (ssize_t count = 0; (count = read(screen, piece, sizeof piece)) > 0;)
            bytes.append(piece, int(count));
        return bytes;
    }

private:
    int screen = -1;
    int end = -1;
    QByteArray fileName;
};

#endif
