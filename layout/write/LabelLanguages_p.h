#ifndef LAYOUT_WRITE_LABELLANGUAGES_P_H
#define LAYOUT_WRITE_LABELLANGUAGES_P_H

#include "model/Layout.h"

#include <map>
#include <utility>

namespace vanlayout
{

/// The languages of the labels of a layout, numbered from 0: those that it declares, then others in the order in which
/// they are met. A second text of a label in one language has a number of its own, so that each text of a label has
/// another number.
class LabelLanguages
{
public:
    explicit LabelLanguages(const QVector<Language> &declared);

    /// The number of the language of each part of a label.
    QVector<int> numbersOf(const Labels &labels);

    /// The number of the language with this code, without regard to case; 0 where there is none.
    int find(const QString &code) const;

    /// All languages that were declared or met. The label of one that is not declared is empty.
    const QVector<Language> &inOrder() const { return languages; }

private:
    using Key = std::pair<QString, int>; // code in lower case, and how many texts in it the label has before

    int numberOf(const QString &code, int time);

    QVector<Language> languages;
    std::map<Key, int> numbers;
};

} // namespace vanlayout

#endif
