#include "Resource.h"

#include <QFile>

QByteArray resource(const QString &name)
{
    QFile file(name);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}
