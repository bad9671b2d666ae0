#ifndef SUPPORT_DEBUGCAPTURE_H
#define SUPPORT_DEBUGCAPTURE_H

#include <QString>
#include <QStringList>
#include <QtGlobal>

/// Collects, in order, the debug lines that are written while this object exists.
class DebugCapture
{
public:
    DebugCapture()
        : former(qInstallMessageHandler(collect))
    {
        lines().clear();
    }
    ~DebugCapture() { qInstallMessageHandler(former); }
    DebugCapture(const DebugCapture &) = delete;
    DebugCapture &operator=(const DebugCapture &) = delete;

    QStringList taken() const { return lines(); }

private:
    static QStringList &lines()
    {
        static QStringList collected;
        return collected;
    }
    static void collect(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
    {
        if (type == QtDebugMsg)
            lines().append(message);
    }

    QtMessageHandler former;
};

#endif
