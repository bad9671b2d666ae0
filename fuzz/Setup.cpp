// What every fuzzer does first.

#include <QLoggingCategory>

extern "C" int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/)
{
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false); // thousands of lines a second
    return 0;
}
