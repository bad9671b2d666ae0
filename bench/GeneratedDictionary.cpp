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

const char *const jsonHead = R"({
  "software": "CSPro", 
  "version": 8.0, 
  "fileType": "dictionary", 
  "name": "GENERATED", 
  "labels": [ { "text": "Generated" } ], 
  "recordType": {
    "start": 1, 
    "length": 1
  }, 
  "defaults": {
    "decimalMark": false, 
    "zeroFill": true
  }, 
  "relativePositions": true, 
  "levels": [
    {
      "name": "LEVEL", 
      "labels": [ { "text": "Level" } ], 
      "ids": {
        "items": [ ]
      }, 
      "records": [
        {
          "name": "REC", 
          "labels": [ { "text": "Record" } ], 
          "recordType": "1", 
          "occurrences": {
            "required": true, 
            "maximum": 1
          }, 
          "items": [
)";
const char *const jsonTail = R"(
          ]
        }
      ]
    }
  ]
}
)";

void addJsonValue(QByteArray &text, int value)
{
    const QByteArray number = QByteArray::number(value);
    text += value == 1 ? "" : ", \n";
    text += "                    {\n                      \"labels\": [ { \"text\": \"Answer number " + number
        + "\" } ], \n                      \"pairs\": [ { \"value\": \"" + number + "\" } ]\n                    }";
}

void addJsonItem(QByteArray &text, int index, int values)
{
    const QByteArray label
        = "\"labels\": [ { \"text\": \"Question number " + QByteArray::number(index) + " of the form\" } ]";
    const QByteArray name = "\"name\": \"Q" + QByteArray::number(index).rightJustified(6, '0');
    const QByteArray indent(14, ' ');
    text += index == 0 ? "" : ", \n";
    text += "            {\n" + indent + name + "\", \n" + indent + label + ", \n" + indent
        + "\"contentType\": \"numeric\", \n" + indent + "\"start\": " + QByteArray::number(2 + 2 * index) + ", \n"
        + indent + "\"length\": 2, \n" + indent + "\"zeroFill\": true";
    if (values > 0) {
        text += ", \n" + indent + "\"valueSets\": [\n" + indent + "  {\n" + indent + "    " + name + "_VS1\", \n"
            + indent + "    " + label + ", \n" + indent + "    \"values\": [\n";
        for (int value = 1; value <= values; ++value)
            addJsonValue(text, value);
        text += '\n' + indent + "    ]\n" + indent + "  }\n" + indent + ']';
    }
    text += "\n            }";
}

} // namespace

QByteArray generatedDictionary(int items, int values)
{
    QByteArray text(head);
    for (int index = 0; index < items; ++index)
        addItem(text, index, values);
    return text;
}

QByteArray generatedJsonDictionary(int items, int values)
{
    QByteArray text(jsonHead);
    for (int index = 0; index < items; ++index)
        addJsonItem(text, index, values);
    return text + jsonTail;
}

QByteArray generatedRecords(int records)
{
    QByteArray text("[Dictionary]\nVersion=CSPro 7.7\nName=GENERATED\nRecordTypeStart=1\nRecordTypeLen=7\n\n");
    for (int index = 0; index < records; ++index) {
        const QByteArray number = QByteArray::number(index).rightJustified(7, '0');
        text += "[Record]\nName=RECORD_" + number + "\nRecordTypeValue='" + number + "'\n\n";
    }
    return text;
}
