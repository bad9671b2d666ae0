#include "GeneratedDictionary.h"

namespace
{

const char *const head = "[Dictionary]\nVersion=CSPro 7.7\nLabel=Generated\nName=GENERATED\nRecordTypeStart=1\n"
                         "RecordTypeLen=1\nPositions=Relative\nZeroFill=Yes\nDecimalChar=No\n\n"
                         "[Level]\nLabel=Level\nName=LEVEL\n\n[IdItems]\n\n"
                         "[Record]\nLabel=Record\nName=REC\nRecordTypeValue='1'\nRecordLen=100\n\n";

void addItem(QByteArray &text, int index, int values)
{
    const QByteArray label = "Label=Question number " + QByteArray::number(index) + " of the form\n";
    const QByteArray name = "Name=Q" + QByteArray::number(index).rightJustified(6, '0');
    text += "[Item]\n" + label + name + "\nStart=" + QByteArray::number(2 + 2 * index)
        + "\nLen=2\nDataType=Numeric\nZeroFill=Yes\n\n";
    if (values == 0)
        return;
    text += "[ValueSet]\n" + label + name + "_VS1\n";
    for (int value = 1; value <= values; ++value) {
        const QByteArray number = QByteArray::number(value);
        text += "Value=" + number + ";Answer number " + number + '\n';
    }
    text += '\n';
}

} // namespace

QByteArray generatedDictionary(int items, int values)
{
    QByteArray text(head);
    for (int index = 0; index < items; ++index)
        addItem(text, index, values);
    return text;
}
