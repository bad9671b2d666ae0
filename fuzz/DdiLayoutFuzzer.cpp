// A DDI Codebook document, from its bytes to the exact layout, its JSON form and the DDI document that is written of
// it.

#include "ReadLayout.h"

#include "write/Ddi.h"
#include "write/Exportable.h"

namespace
{

void readAndExport(QByteArray bytes)
{
    readLayoutOf(bytes);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const vanlayout::Layout layout = vanlayout::readLayout(buffer, QStringLiteral("name"));
    if (!layout.isRead() || !vanlayout::exportProblem(layout).isEmpty())
        return;
    QBuffer document;
    document.open(QIODevice::ReadWrite);
    if (!vanlayout::writeDdi(layout, document))
        qFatal("the document is not written whole");
    document.seek(0);
    if (!vanlayout::readLayout(document, QStringLiteral("name")).isRead())
        qFatal("a document that was written cannot be read");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    constexpr size_t longest = 1 << 16;
    if (size > longest)
        return 0;
    // The format is determined by content; within these elements, each input is read as the description of variables.
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    readAndExport(bytes);
    if (!bytes.contains("<codeBook"))
        readAndExport("<codeBook><dataDscr>" + bytes + "</dataDscr></codeBook>");
    return 0;
}
