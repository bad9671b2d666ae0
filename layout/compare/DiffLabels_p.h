#ifndef LAYOUT_COMPARE_DIFFLABELS_P_H
#define LAYOUT_COMPARE_DIFFLABELS_P_H

#include "model/Layout.h"
#include "util/KeyedHash_p.h"

#include <functional>

namespace vanlayout
{

/// The languages of one layout: those that it declares, then others that its labels name.
///
/// A first part without a language is in the first of them. Further parts without a language, beyond the declared ones,
/// have numbers as codes: "#2".
class LayoutLanguages
{
public:
    explicit LayoutLanguages(const Layout &layout);

    /// Codes, the first being that of the primary language; one empty code if no language has a name.
    const QStringList &codes() const { return list; }
    /// The index in codes() of the language of a part of a label.
    int indexOf(const Labels &labels, int part) const;
    /// The index in codes() of a code, compared case-insensitively; -1 if it is absent.
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
    /// Called for each language in which a label differs.
    using Differ = std::function<void(const QString &language, const QString &before, const QString &after)>;
    enum Side { Before, After };
    /// In a lenient comparison, texts that differ only in white space are the same.
    enum class Strictness { Exact, Lenient };

    /// Labels are compared only in \a language, or, if it is empty, in all languages that both layouts have.
    LabelComparison(const Layout &before, const Layout &after, const QString &language, Strictness howStrict);

    /// Calls \a differ for each language in which the texts differ. A language that a label lacks has the text of its
    /// first part. In a lenient comparison, a text is the same as its beginning of at least \a longest characters; 0
    /// for no such bound.
    void compare(const Labels &before, const Labels &after, int longest, const Differ &differ) const;

    /// The text of a label in the first language that is compared, in the form that is used to match elements.
    QString keyText(const Labels &labels, Side side) const;
    /// The text of a label for people, in the first language that is compared.
    QString text(const Labels &labels, Side side) const;

    /// The codes of the languages that only the later or only the earlier layout has.
    const QStringList &added() const { return onlyAfter; }
    const QStringList &removed() const { return onlyBefore; }
    /// The compared languages of both layouts, in the order of the earlier layout or of the later one; the codes are
    /// spelled as in the earlier one.
    QStringList sharedBefore() const;
    QStringList sharedAfter() const;

private:
    struct Shared {
        QString code; // as in changes
        int before = 0;
        int after = 0;
    };
    /// The text of a label in one of the languages that are compared.
    struct Own {
        int shared = 0;
        const QString *text = nullptr;
    };

    void share(const QString &code, int beforeIndex, int afterIndex);
    void shareLanguages(const QString &language);
    QVector<Own> ownTexts(const Labels &labels, Side side) const;
    bool isSame(const QString &before, const QString &after, int longest) const;

    LayoutLanguages languages[2];
    QVector<int> sharedOf[2]; // index in `shared` of each language of a side; -1 for one that is not compared
    QVector<Shared> shared;
    QStringList onlyBefore;
    QStringList onlyAfter;
    Strictness strictness;
};

} // namespace vanlayout

#endif
