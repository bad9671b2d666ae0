#ifndef UTIL_FILEREADING_P_H
#define UTIL_FILEREADING_P_H

#include <QByteArray>
#include <QFile>
#include <QString>

#include <new>

/// Returns the reason why reading from an open \a file failed, as one line for a person. Null if it has not failed.
/// Example: "cannot be read: Input/output error".
inline QString readProblemOf(const QFileDevice &file)
{
    return file.error() == QFileDevice::NoError ? QString() : QStringLiteral("cannot be read: ") + file.errorString();
}

/// Returns all bytes of an open \a file; none if reading fails, and `readProblemOf` then returns the reason.
inline QByteArray readAllOf(QFile &file)
{
    const QByteArray bytes = file.readAll();
    // A read that fails after some bytes returns those; only the next one fails.
    char next = 0;
    file.read(&next, 1);
    return file.error() == QFileDevice::NoError ? bytes : QByteArray();
}

/// Ends reading in the same way as a lack of memory, for another cause.
class ReadingGivenUp : public std::bad_alloc
{
public:
    /// \a line is for a person; null if the error that results from this needs no further text.
    explicit ReadingGivenUp(const QString &line)
        : text(line)
    {
    }

    const QString &problem() const { return text; }

private:
    QString text;
};

#endif
