#ifndef LAYOUT_COMPARE_DIFFLABELS_P_H
#define LAYOUT_COMPARE_DIFFLABELS_P_H

#include "model/Layout.h"
#include "util/KeyedHash_p.h"

#include <functional>

namespace vanlayout
{

/// The languages of one layout: those that it declares, then those that its labels name beside them.
///
/// A first part without a language is in the first of them. Further parts without a language, after the declared ones,
/// have numbers as codes: "#2".
class LayoutLanguages
{
public:
    explicit LayoutLanguages(const Layout &layout);

    /// Codes, the first being that of the primary language; one empty code where no language has a name.
    const QStringList &codes() const { return list; }
    /// The place of the language of a part among the codes.
    int indexOf(const Labels &labels, int part) const;
    int indexOf(const QString &code) const;

private:
    void add(const QString &code);
    void addUsed(const Labels &labels);

    QStringList list;
    KeyedMap<QString, int> places; // by code ignoring case
};

/// The labels of two layouts, language by language.
class LabelComparison
{
public:
    /// Handed over for each language in which a label differs.
    using Differ = std::function<void(const QString &language, const QString &before, const QString &after)>;
    enum Side { Before, After };

    /// Labels are compared in \a language alone, or in all that both layouts have where it is empty. Texts that differ
    /// in white space alone are the same if \a isLenient.
    LabelComparison(const Layout &before, const Layout &after, const QString &language, bool isLenient);

    /// Calls \a differ for each language in which the texts differ. A language that a label lacks has the text of its
    /// first part. A text that is longer than \a longest characters is the same as its beginning; 0 for no bound.
    void compare(const Labels &before, const Labels &after, int longest, const Differ &differ) const;

    /// The text of a label in the first language that is compared, as it is used to recognize an element.
    QString keyText(const Labels &labels, Side side) const;
    /// The text of a label for people, in the first language that is compared.
    QString text(const Labels &labels, Side side) const;

    /// Languages of one layout alone that have a name.
    const QStringList &added() const { return onlyAfter; }
    const QStringList &removed() const { return onlyBefore; }
    /// Languages of both layouts, in the order of the earlier one and of the later one.
    QStringList sharedBefore() const;
    QStringList sharedAfter() const;

private:
    struct Shared {
        QString code; // as reported
        int before = 0;
        int after = 0;
    };
    /// The texts of one label in the languages that are compared, sorted by these.
    struct Own {
        int shared = 0;
        const QString *text = nullptr;
    };

    void share(const QString &code, int beforeIndex, int afterIndex);
    void shareLanguages(const QString &language);
    QVector<Own> ownTexts(const Labels &labels, Side side) const;
    bool isSame(const QString &before, const QString &after, int longest) const;

    LayoutLanguages languages[2];
    QVector<int> sharedOf[2]; // place among the shared ones of each language; -1 for one that is not compared
    QVector<Shared> shared;
    QStringList onlyBefore;
    QStringList onlyAfter;
    bool ignoresWhiteSpace;
};

} // namespace vanlayout

#endif
