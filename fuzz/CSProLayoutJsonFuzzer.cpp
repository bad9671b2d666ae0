// A CSPro JSON dictionary, from its bytes to the exact layout and its JSON form.

#include "ReadLayout.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // The reader goes by content; a brace at the beginning makes each input one of this form.
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
    readLayoutOf(bytes.startsWith('{') ? bytes : '{' + bytes);
    return 0;
}
