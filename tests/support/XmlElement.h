#ifndef SUPPORT_XMLELEMENT_H
#define SUPPORT_XMLELEMENT_H

#include <QStringList>
#include <QVector>
#include <QXmlStreamReader>

/// One element of an XML document. Its text does not include the texts of the elements in it.
struct XmlElement {
    QString name;
    QXmlStreamAttributes attributes;
    QString text;
    QVector<XmlElement> children;

    /// Returns the elements at a path such as `fileTxt/fileName`, below all matching elements on the path.
    QVector<XmlElement> all(const QString &path) const
    {
        const int slash = path.indexOf('/');
        QVector<XmlElement> found;
        for (const XmlElement &child : children) {
            if (child.name == path.left(slash))
                found += slash < 0 ? QVector<XmlElement>{ child } : child.all(path.mid(slash + 1));
        }
        return found;
    }
    /// Returns the first of them; an empty element if there is none.
    XmlElement one(const QString &path) const { return all(path).value(0); }
    /// Returns an attribute; empty if it is absent.
    QString operator[](const QString &attribute) const { return attributes.value(attribute).toString(); }
    bool has(const QString &attribute) const { return attributes.hasAttribute(attribute); }
};

inline XmlElement readXmlElement(QXmlStreamReader &xml)
{
    XmlElement element{ xml.name().toString(), xml.attributes(), QString(), {} };
    while (!xml.atEnd()) {
        switch (xml.readNext()) {
        case QXmlStreamReader::StartElement:
            element.children.append(readXmlElement(xml));
            break;
        case QXmlStreamReader::Characters:
            element.text += xml.text();
            break;
        case QXmlStreamReader::EndElement:
            return element;
        default:
            break;
        }
    }
    return element;
}

/// Returns the root of a document; an empty element if the document is not well-formed.
inline XmlElement readXmlDocument(const QByteArray &document)
{
    QXmlStreamReader xml(document);
    if (!xml.readNextStartElement())
        return {};
    const XmlElement root = readXmlElement(xml);
    return xml.hasError() ? XmlElement() : root;
}

#endif
