#ifndef LAYOUT_MADECONCORDANCE_H
#define LAYOUT_MADECONCORDANCE_H

#include "compare/Concord.h"

#include <QBuffer>
#include <QByteArray>

/// Short functions that make concordances for tests.
namespace made
{

using namespace vanlayout;

/// A round that does not have the variable.
constexpr std::nullopt_t absent = std::nullopt;

inline ConcordCell cell(const QString &item, const QString &label = QString(),
                        const QVector<ConcordChange> &changes = {})
{
    return { QStringLiteral("L"), QStringLiteral("R"), item, label, changes };
}

inline ConcordVariable variable(const QVector<std::optional<ConcordCell>> &cells)
{
    ConcordVariable made;
    made.cells = cells;
    return made;
}

inline ConcordCode code(int variable, const QString &from, const QVector<std::optional<QString>> &labels,
                        CodeChange change = CodeChange::None)
{
    ConcordCode made;
    made.variable = variable;
    made.from = from;
    made.cells = labels;
    made.change = change;
    return made;
}

inline ConcordCode codeRange(int variable, const QString &from, const QString &to,
                             const QVector<std::optional<QString>> &labels)
{
    ConcordCode made = code(variable, from, labels);
    made.to = to;
    return made;
}

/// The texts at which a writer can fail, as data of a test with the column "text".
inline void hostileTexts()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("quotes") << "say \"a\", 'b'";
    QTest::newRow("element") << "<b onclick=\"alert(1)\">x</b>";
    QTest::newRow("script") << "</script><script>alert(1)</script>";
    QTest::newRow("comment") << "<!-- ]]> -->";
    QTest::newRow("braces") << "{{data}} {{script}}";
    QTest::newRow("controls") << QString::fromUtf8("a\x01\x1B[31m b\u009B\t");
    QTest::newRow("lines") << QString::fromUtf8("a\r\nb\nc\u2028d\u2029");
    QTest::newRow("formula") << "=1+cmd|' /C calc'!A0";
    QTest::newRow("right to left") << QString::fromUtf8("\u0627\u0644\u062F\u064A\u0646 \u202Ea\u202C");
    QTest::newRow("half a pair") << QString(QChar(0xD83D)) + "x";
    QTest::newRow("backslash") << "C:\\new\\u0041";
}

/// A concordance of two rounds with the text in each place that is of a file.
inline Concordance hostileConcordance(const QString &text)
{
    Concordance concordance;
    QString name = text;
    concordance.rounds = QStringList{ name.replace('/', '-'), name + "2" };
    ConcordCell first = cell(text, text);
    first.level = first.record = text;
    ConcordCell second = first;
    second.changes = { ConcordChange::Renamed, ConcordChange::Moved, ConcordChange::Label };
    concordance.variables = { variable({ first, second }), variable({ absent, second }) };
    concordance.codes
        = { code(0, text, { text, text + "2" }, CodeChange::Meaning), codeRange(1, text, text, { absent, text }) };
    return concordance;
}

/// A device that accepts only a given number of bytes.
class SmallDevice : public QIODevice
{
public:
    explicit SmallDevice(qint64 bytes)
        : space(bytes)
    {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

protected:
    qint64 readData(char * /*data*/, qint64 /*size*/) override { return -1; }
    qint64 writeData(const char * /*data*/, qint64 size) override
    {
        space -= size;
        return space < 0 ? -1 : size;
    }

private:
    qint64 space;
};

/// The bytes from a writer; empty if it reports a failure.
template <typename Write> QByteArray bytesOf(Write write)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return write(buffer) ? buffer.data() : QByteArray();
}

/// Whether a writer reports a device that refuses bytes, and accepts one that does not.
template <typename Write> bool reportsFullDevice(Write write)
{
    const qint64 size = bytesOf(write).size();
    SmallDevice empty(0);
    SmallDevice small(size - 1);
    SmallDevice exact(size);
    return size > 0 && !write(empty) && !write(small) && write(exact);
}

} // namespace made

#endif
