// A CSPro text dictionary, from its bytes to the exact layout and its JSON form.

#include "ReadLayout.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // The reader goes by content; a bracket at the begin makes each input one of this form.
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
    readLayoutOf(bytes);
    if (!bytes.startsWith("[Dictionary]"))
        readLayoutOf("[Dictionary]\n" + bytes);
    return 0;
}
