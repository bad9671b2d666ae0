#ifndef LAYOUT_WRITE_DDIELEMENTS_P_H
#define LAYOUT_WRITE_DDIELEMENTS_P_H

#include "XmlStream_p.h"

#include <QStringList>

// Elements of DDI that several of its sections have.

namespace vanlayout
{

/// The file that all variables are in: the ID of its `fileDscr`.
inline QString ddiFileId()
{
    return QStringLiteral("file-1");
}

/// One `labl` for each text of the labels that is not empty, with its language. \a level names the element that it is
/// the label of, such as "variable"; empty where it is omitted.
inline void writeDdiLabels(XmlStream &xml, const Labels &labels, const QString &level)
{
    for (const Label &label : labels.parts) {
        if (label.text.isEmpty())
            continue;
        xml.begin(QStringLiteral("labl"));
        xml.language(label.language);
        xml.attributeIfAny(QStringLiteral("level"), level);
        xml.content(label.text);
        xml.end();
    }
}

/// The columns of a variable, 1-based; nothing where it has none.
inline void writeDdiLocation(XmlStream &xml, int start, int length)
{
    if (start <= 0 || length <= 0)
        return;
    xml.empty(QStringLiteral("location"));
    xml.attribute(QStringLiteral("StartPos"), start);
    xml.attribute(QStringLiteral("EndPos"), qint64(start) + length - 1);
    xml.attribute(QStringLiteral("width"), length);
    xml.attribute(QStringLiteral("fileid"), ddiFileId());
}

/// An element `notes` of a type, where there is a text.
inline void writeDdiNote(XmlStream &xml, const QString &type, const QString &text)
{
    if (text.isEmpty())
        return;
    xml.begin(QStringLiteral("notes"));
    xml.attribute(QStringLiteral("type"), type);
    xml.content(text);
    xml.end();
}

inline void writeDdiAliases(XmlStream &xml, const QStringList &aliases)
{
    writeDdiNote(xml, QStringLiteral("aliases"), aliases.join(QLatin1String(", ")));
}

} // namespace vanlayout

#endif
