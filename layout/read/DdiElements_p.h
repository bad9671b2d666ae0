#ifndef LAYOUT_READ_DDIELEMENTS_P_H
#define LAYOUT_READ_DDIELEMENTS_P_H

#include "read/DdiContent_p.h"
#include "read/DdiXml_p.h"

/// Elements of DDI that occur in several places. Each operation reads the current element of the document and leaves
/// it.
namespace vanlayout::ddi
{

/// The words of a list of IDs or names, such as the attribute `files`.
QStringList wordsOf(const QString &list);
/// A whole number from 1; none for any other text.
std::optional<int> countOf(const QString &text);
/// The aliases of a note of type `aliases`.
QStringList aliasesOf(const QString &text);

/// Reads a text with its language into a label; an empty one is no label.
void readLabel(Xml &xml, Labels &labels);
/// Reads an element `notes`.
Note readNote(Xml &xml);
/// Appends a text to a note, on a line of its own.
void appendText(QString &note, const QString &text);

/// Reads an element for which there is no member: a statement for each text and each attribute in it. \a prefix is the
/// key of the element around it, with a `/` at its end, or empty. \a category is that of the statements.
void keep(Xml &xml, QVector<Statement> &statements, const QString &prefix = QString(), int category = 0);
/// Keeps the attributes of the current element for which there is no member; \a known are the names of the others, each
/// with a blank before and after it. Does not leave the element.
void keepAttributes(const Xml &xml, QVector<Statement> &statements, const QString &prefix, const char *known,
                    int category = 0);
/// Keeps a note without a known type.
void keepNote(const Note &note, QVector<Statement> &statements, const QString &key);

} // namespace vanlayout::ddi

#endif
