#include "cspro/TextLines_p.h"

#include <QtTest>

namespace
{

QStringList linesOf(const QString &text)
{
    QStringList lines;
    const TextLines views = TextLines::ofText(text);
    for (int i = 0; views.has(i); ++i)
        lines.append(views.at(i).toString());
    return lines;
}

} // namespace

class TextLinesTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void lineFeedEndsALine_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("expected");
        // clang-format off
        QTest::newRow("two lines")                       << "a\nb\n"   << QStringList({"a", "b"});
        QTest::newRow("last line without a line feed")   << "a\nb"     << QStringList({"a", "b"});
        QTest::newRow("no line after a final line feed") << "a\n"      << QStringList({"a"});
        QTest::newRow("empty lines")                     << "\n\na\n\n" << QStringList({"", "", "a", ""});
        QTest::newRow("line feed only")                  << "\n"       << QStringList({""});
        QTest::newRow("empty text")                      << ""         << QStringList();
        QTest::newRow("null text")                       << QString()  << QStringList();
        QTest::newRow("one line")                        << "a"        << QStringList({"a"});
        QTest::newRow("blanks and tabs stay")            << " a \n\tb" << QStringList({" a ", "\tb"});
        QTest::newRow("other separators end no line")    << QString("a\vb\fc") + QChar(0x85) + QChar(0x2028) + "d\n"
                                                         << QStringList({QString("a\vb\fc") + QChar(0x85) + QChar(0x2028) + "d"});
        QTest::newRow("NUL ends no line")                << QString("a") + QChar(0) + "b\nc" << QStringList({QString("a") + QChar(0) + "b", "c"});
        // clang-format on
    }
    void lineFeedEndsALine()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, expected);
        QCOMPARE(linesOf(text), expected);
    }

    void linesCanBeAskedForInAnyOrder()
    {
        const QString text = "first\n\nthird\nfourth";
        const TextLines lines = TextLines::ofText(text);
        QCOMPARE(lines.at(3).toString(), QString("fourth"));
        QCOMPARE(lines.at(0).toString(), QString("first"));
        QCOMPARE(lines.at(2).toString(), QString("third"));
        QVERIFY(lines.at(1).isEmpty());
        QVERIFY(!lines.has(4));
        QVERIFY(!lines.has(400));
        QVERIFY(lines.has(3));
        QVERIFY(!lines.has(-1));
        QVERIFY(lines.has(0));
    }

    void linesAreViewsOfTheirText()
    {
        const QString text = "first\nsecond";
        const TextLines lines = TextLines::ofText(text);
        QCOMPARE(lines.at(1).data(), text.constData() + 6);
    }

    void listOfTextsServesAsLines()
    {
        const QStringList list = { "a", "", "b\nc" };
        const TextLines lines(list);
        QVERIFY(lines.has(2));
        QVERIFY(!lines.has(3));
        QVERIFY(!lines.has(-1));
        QCOMPARE(lines.at(1).size(), qsizetype(0));
        QCOMPARE(lines.at(2).toString(), QString("b\nc"));
        QVERIFY(TextLines(&list).has(2));
        QVERIFY(!TextLines(&list).has(3));
    }

    void listOfTextsServesAsASection()
    {
        const QStringList list = { "a", "", "b\nc" };
        QStringList got;
        for (const QStringView line : SectionLines(&list))
            got.append(line.toString());
        QCOMPARE(got, list);
        QVERIFY(!SectionLines(list).isEmpty());
    }

    void nullListCountsAsNoLines()
    {
        const QStringList *none = nullptr;
        QVERIFY(!TextLines(none).has(0));
        QVERIFY(SectionLines(none).isEmpty());
        QVERIFY(SectionLines().isEmpty());
    }

    void lineIsAppendedAtTheEndOfASection()
    {
        const QStringList list = { "a", "b" };
        const QString text = "c";
        SectionLines lines(list);
        lines.append(text);
        QStringList got;
        for (const QStringView line : lines)
            got.append(line.toString());
        QCOMPARE(got, QStringList({ "a", "b", "c" }));
    }
};

QTEST_GUILESS_MAIN(TextLinesTest)
#include "TextLinesTest.moc"
