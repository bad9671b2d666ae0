// A CSPro text dictionary, from the file to a filled provider. The first byte answers the question on decimal codes.

#include "FuzzedFile.h"
#include "SameWithReport.h"
#include "cspro/CSProDataImport.h"
#include "cspro/DecimalQuestion.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static FuzzedFile file;
    if (size == 0)
        return 0;
    constexpr int buttons[] = { QMessageBox::Yes, QMessageBox::YesToAll, QMessageBox::No, QMessageBox::NoToAll };
    const int button = buttons[data[0] % 4];
    setDecimalAnswer([button](const DecimalQuestion & /*question*/) { return button; });
    // A dictionary itself is a seed, so that byte is part of it.
    const QString name = file.holding(data, size);
    requireSameWithReport(TCSProDataImport(name), TCSProDataImport(name));
    return 0;
}
