#include "read/Reader.h"

#include "read/Formats_p.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <vector>

namespace vanlayout
{

namespace
{

// An RTF document begins with the brace of a JSON object.
bool isJson(const QByteArray &head)
{
    return isCSProJson(head) && !head.startsWith("{\\rtf");
}

// clang-format off
// The formats in the order in which they are tried.
const std::vector<FileFormat> &fileFormats()
{
    static const std::vector<FileFormat> formats = {
        {isCSProDatabase, readCSProDatabase},
        {isStatFile, readStatFile},
        {isJson, readCSProJson},
        {isDdi, readDdi},
        {isCSProText, readCSProText},
    };
    return formats;
}
// clang-format on

// Reads more bytes than those by which formats are recognised, because lines of a CSV file can be much longer.
void reportUnknown(QIODevice &device, Diagnostics &diagnostics)
{
    constexpr int describedSize = 1 << 16;
    const QByteArray begin = device.peek(describedSize);
    reportUnknownFile(begin, begin.size() < describedSize, diagnostics);
}

void readWith(Input &input, Layout &layout, Diagnostics &diagnostics)
{
    const std::vector<FileFormat> &formats = fileFormats();
    const auto format = std::find_if(formats.begin(), formats.end(),
                                     [&](const FileFormat &candidate) { return candidate.recognises(input.head); });
    if (format != formats.end())
        format->read(input, layout, diagnostics);
    else
        reportUnknown(input.device, diagnostics);
}

// The problem of the device after the last bytes of a short file; empty at the end of the file. Only reading shows
// which of the two it is.
QString problemOfContent(QIODevice &device)
{
    const qint64 begin = device.pos();
    QString problem;
    readAllOf(device, problem);
    device.seek(begin);
    return problem;
}

// The device is at the beginning of the file, and random access is possible.
void readDevice(QIODevice &device, const QString &path, const ReadOptions &options, Layout &layout)
{
    Diagnostics diagnostics(layout);
    bool isAll = false;
    const QByteArray head = headOf(device, isAll);
    const QString problem = isAll ? problemOfContent(device) : QString();
    if (!problem.isEmpty()) {
        diagnostics.fail("cannot-read", problem);
        return;
    }
    if (head.isEmpty()) {
        diagnostics.fail("empty-file", QStringLiteral("the file is empty"));
        return;
    }
    Input input = { device, path, head, options };
    readWith(input, layout, diagnostics);
}

void readSequential(QIODevice &device, const ReadOptions &options, Layout &layout)
{
    QString problem;
    QByteArray bytes = readAllOf(device, problem);
    if (!problem.isEmpty()) {
        Diagnostics(layout).fail("cannot-read", problem);
        return;
    }
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    readDevice(buffer, QString(), options, layout);
}

} // namespace

Layout readLayout(QIODevice &device, const QString &name, const ReadOptions &options)
{
    Layout layout;
    layout.file = name;
    if (device.isSequential())
        readSequential(device, options, layout);
    else
        readDevice(device, QString(), options, layout);
    return layout;
}

Layout readLayout(const QString &path, const ReadOptions &options)
{
    Layout layout;
    layout.file = path;
    QFile file(path);
    if (QFileInfo(path).isDir())
        Diagnostics(layout).fail("cannot-open", QStringLiteral("is a directory"));
    else if (!file.open(QIODevice::ReadOnly))
        Diagnostics(layout).fail("cannot-open", QStringLiteral("cannot be opened: %1").arg(file.errorString()));
    else if (file.isSequential())
        readSequential(file, options, layout);
    else
        readDevice(file, path, options, layout);
    return layout;
}

QByteArray headOf(QIODevice &device, bool &isAll)
{
    int size = headSize;
    QByteArray head = device.peek(size);
    while (head.size() == size && size < maxHeadSize && (isBlankCSProText(head) || isBlankCSProJson(head))) {
        size *= 2;
        head = device.peek(size);
    }
    isAll = head.size() < size;
    return head;
}

QByteArray readAllOf(QIODevice &device, QString &problem)
{
    constexpr qint64 maxSize = qint64(1) << 30;
    constexpr qint64 blockSize = 1 << 18;
    QByteArray bytes;
    if (!device.isSequential())
        bytes.reserve(int(std::clamp<qint64>(device.size() - device.pos(), 0, maxSize)));
    for (;;) {
        const QByteArray block = device.read(blockSize);
        if (block.isEmpty())
            break;
        if (bytes.size() + block.size() > maxSize) {
            problem = QStringLiteral("is larger than 1 GiB, which is the limit");
            return QByteArray();
        }
        bytes += block;
    }
    // QIODevice::read does not distinguish the end of a file from an error; reading one more byte does.
    char byte = 0;
    if (device.read(&byte, 1) < 0)
        problem = QStringLiteral("cannot be read: %1").arg(device.errorString());
    return bytes;
}

} // namespace vanlayout
