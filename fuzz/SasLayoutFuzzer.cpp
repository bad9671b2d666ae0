// A SAS data set, from its bytes to the exact layout and its JSON form.

#include "ReadLayout.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    readLayoutOf(QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size)));
    return 0;
}
