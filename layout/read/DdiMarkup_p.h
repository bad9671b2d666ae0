#ifndef LAYOUT_READ_DDIMARKUP_P_H
#define LAYOUT_READ_DDIMARKUP_P_H

#include <QString>

namespace vanlayout::ddi
{

/// Looks through the markup of an XML document before a parser does, for what would make a parser slow or large:
/// declarations of entities, and elements with very many attributes, which parsers compare with each other.
///
/// The text comes in blocks of any size; markup may be split between them. It need not be well-formed: whatever a
/// parser accepts as markup is recognised here.
class MarkupScan
{
public:
    /// Takes the next block. Returns false if it has something that must not reach a parser; problem() then says what.
    bool accepts(const QString &block);
    const char *problem() const { return found; }
    /// The 1-based line of the problem, or of the end of the text so far.
    int line() const { return lineNumber; }

    static constexpr int maxAttributes = 1'000;

private:
    enum class State { Text, Opened, Declared, Tag, Quoted, Comment, CData, Instruction };

    void take(QChar character);
    void open(QChar character);
    void declare(QChar character);
    void takeInTag(QChar character);
    void takeUntil(QChar character, const char *end);

    State state = State::Text;
    QChar quote;
    QString word; ///< beginning of a declaration, or the last characters of a comment, section or instruction
    int attributes = 0;
    int lineNumber = 1;
    bool isAfterSign = false; ///< whether the last character in a tag, white space aside, was `=`
    const char *found = nullptr;
};

} // namespace vanlayout::ddi

#endif
