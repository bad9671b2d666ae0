#ifndef SUPPORT_PSEUDOTERMINAL_H
#define SUPPORT_PSEUDOTERMINAL_H

#include <QByteArray>
#include <QString>

#include <fcntl.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <unistd.h>

/// A terminal on which a process can write, and a test can read what it shows.
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

    /// The end that a process writes to, by its name and as it is open here.
    QString name() const { return QString::fromLocal8Bit(fileName); }
    int descriptor() const { return end; }

    /// Makes its lines so many columns wide.
    bool setWidth(unsigned short columns) const
    {
        winsize size = {};
        size.ws_col = columns;
        size.ws_row = 24;
        return ioctl(end, TIOCSWINSZ, &size) == 0;
    }

    /// What it was sent since it was last asked.
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
