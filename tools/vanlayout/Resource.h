#ifndef VANLAYOUT_RESOURCE_H
#define VANLAYOUT_RESOURCE_H

#include <QByteArray>
#include <QString>

/// What a file inside of the command holds; its name begins with ":/".
QByteArray resource(const QString &name);

#endif
