// A CSPro JSON dictionary, from its bytes to the exact layout and its JSON form.

#include "ReadLayout.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // The format is determined by content; with a brace at the beginning, each input is read as this form.
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
    readLayoutOf(bytes.startsWith('{') ? bytes : '{' + bytes);
    return 0;
}
