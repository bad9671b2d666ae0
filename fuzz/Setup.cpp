// The initialisation of all fuzzers.

#include <QLoggingCategory>

extern "C" int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/)
{
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false); // there would be thousands of lines per second
    return 0;
}
