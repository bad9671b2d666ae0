#ifndef LAYOUT_WRITE_LABELLANGUAGES_P_H
#define LAYOUT_WRITE_LABELLANGUAGES_P_H

#include "model/Layout.h"

#include <map>
#include <utility>

namespace vanlayout
{

/// The languages of the labels of a layout, numbered from 0: those that it declares, then others in the order of
/// their first use. A second text of a label in one language has a separate number, so that each text of a label has a
/// different one.
class LabelLanguages
{
public:
    explicit LabelLanguages(const QVector<Language> &declared);

    /// The number of the language of each part of a label.
    QVector<int> numbersOf(const Labels &labels);

    /// The number of the language with this code, ignoring case; 0 if there is none.
    int find(const QString &code) const;

    /// All declared or used languages. The label of an undeclared one is empty.
    const QVector<Language> &inOrder() const { return languages; }

private:
    using Key = std::pair<QString, int>; // code in lower case, and the number of texts in it that precede in the label

    int numberOf(const QString &code, int time);

    QVector<Language> languages;
    std::map<Key, int> numbers;
};

} // namespace vanlayout

#endif
