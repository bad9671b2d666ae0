#ifndef FUZZ_FUZZEDFILE_H
#define FUZZ_FUZZEDFILE_H

#include <QByteArray>
#include <QString>
#include <QTemporaryFile>

#include <cstddef>
#include <cstdint>

/// A file with the bytes of one run, for readers that open a file by name. All runs use the same file.
class FuzzedFile
{
public:
    FuzzedFile()
    {
        if (!file.open())
            qFatal("no temporary file");
    }

    QString holding(const uint8_t *data, size_t size)
    {
        if (!file.resize(0) || !file.seek(0) || file.write(reinterpret_cast<const char *>(data), qint64(size)) < 0
            || !file.flush())
            qFatal("the temporary file cannot be written");
        return file.fileName();
    }

private:
    QTemporaryFile file;
};

#endif
