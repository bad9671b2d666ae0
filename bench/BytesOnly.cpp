// The minimal work of a reader of a dictionary, as a separate process: it decodes a text or parses a JSON document.

#include "cspro/TextFileReader_p.h"

#include <QFile>
#include <QJsonDocument>

#include <cstring>

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    const QString path = QFile::decodeName(argv[2]);
    if (std::strcmp(argv[1], "json") == 0) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) && !QJsonDocument::fromJson(file.readAll()).isNull() ? 0 : 1;
    }
    TextFileReader file(path);
    QString text;
    int size = 0;
    while (file.readBlock(text))
        size += text.size();
    return size > 0 ? 0 : 1;
}
