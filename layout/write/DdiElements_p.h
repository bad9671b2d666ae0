#ifndef LAYOUT_WRITE_DDIELEMENTS_P_H
#define LAYOUT_WRITE_DDIELEMENTS_P_H

#include "XmlStream_p.h"

#include <QStringList>

// DDI elements that occur in several sections.

namespace vanlayout
{

/// The ID of the `fileDscr` of the data file, which all variables refer to.
inline QString ddiFileId()
{
    return QStringLiteral("file-1");
}

/// Writes one `labl` for each text of the labels that is not empty, with its language. \a level is the attribute that
/// names the labelled element, such as "variable"; it is omitted if empty.
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

/// Writes the columns of a variable; nothing if it has none. \a start is 1-based, \a length is in characters.
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

/// Writes an element `notes` with a type; nothing if the text is empty.
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
