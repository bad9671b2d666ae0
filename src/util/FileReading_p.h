#ifndef UTIL_FILEREADING_P_H
#define UTIL_FILEREADING_P_H

#include <QByteArray>
#include <QFile>
#include <QString>

#include <new>

/// The reason why reading from an open \a file failed, as one line for a person: "cannot be read: Input/output error".
/// Null where it has not failed.
inline QString readProblemOf(const QFileDevice &file)
{
    return file.error() == QFileDevice::NoError ? QString() : QStringLiteral("cannot be read: ") + file.errorString();
}

/// All bytes of an open \a file; none where reading fails, and `readProblemOf` then says why.
inline QByteArray readAllOf(QFile &file)
{
    const QByteArray bytes = file.readAll();
    // A read that fails behind its first bytes answers those alone; the next one fails as a whole.
    char next = 0;
    file.read(&next, 1);
    return file.error() == QFileDevice::NoError ? bytes : QByteArray();
}

/// Ends reading as memory that gives out does, for a cause that is not memory.
class ReadingGivenUp : public std::bad_alloc
{
public:
    /// \a line is for a person; null where the error that this becomes says enough.
    explicit ReadingGivenUp(const QString &line)
        : text(line)
    {
    }

    const QString &problem() const { return text; }

private:
    QString text;
};

#endif
