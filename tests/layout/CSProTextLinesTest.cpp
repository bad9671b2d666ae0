#include "read/CSProTextLines_p.h"

#include <QTest>

using namespace vanlayout;

namespace
{

// Each statement as `line|key|value`, with only `key` if there is no equals sign.
QStringList statementsOf(const QByteArray &text)
{
    QStringList statements;
    CSProTextLines lines({ text.constData(), size_t(text.size()) });
    Statement statement;
    while (lines.next(statement)) {
        const QString key = QString::fromStdString(std::string(statement.key));
        const QString value = QString::fromStdString(std::string(statement.value));
        statements.append(QString::number(statement.line) + '|' + key + (statement.hasEqualsSign ? "|" + value : ""));
    }
    return statements;
}

} // namespace

class CSProTextLinesTest : public QObject
{
    Q_OBJECT

private slots:
    void linesAreCutIntoStatements_data();
    void linesAreCutIntoStatements();
    void viewsStayValidOverContinuedLines();
    void aSectionBeginsWithABracket();
    void keysAreComparedWithoutCase();
    void encodingIsThatOfTheMarkOrOfTheBytes_data();
    void encodingIsThatOfTheMarkOrOfTheBytes();
    void wellFormedUtf8IsNotCopied();
    void damagedLinesAreNumbered_data();
    void damagedLinesAreNumbered();
};

void CSProTextLinesTest::linesAreCutIntoStatements_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("statements");
    const auto row = [](const char *name, const char *text, const QStringList &statements) {
        QTest::newRow(name) << QByteArray(text) << statements;
    };
    row("nothing", "", {});
    row("line feeds", "a=1\nb=2\n", { "1|a|1", "2|b|2" });
    row("carriage returns and line feeds", "a=1\r\nb=2\r\n", { "1|a|1", "2|b|2" });
    row("both mixed, none at the end", "a=1\r\nb=2\nc=3", { "1|a|1", "2|b|2", "3|c|3" });
    row("a lone carriage return is no line end", "a=1\rb=2\n", { "1|a|1\rb=2" });
    row("empty lines and lines of white space are left out", "\n \t\v\f\r\n\na=1\n\n", { "4|a|1" });
    row("white space at both ends is cut", " \t\v\fa=1 \t\v\f\r\r\n", { "1|a|1" });
    row("white space around the equals sign is cut", "a \t=\v 1", { "1|a|1" });
    row("no-break space stays",
        "a=\xC2\xA0"
        "1",
        { QString("1|a|") + QChar(QChar::Nbsp) + "1" });
    row("first equals sign", "a=b=c", { "1|a|b=c" });
    row("no equals sign", "abc def", { "1|abc def" });
    row("empty key", "=b", { "1||b" });
    row("empty value", "a=", { "1|a|" });
    row("only equals signs", "===", { "1||==" });
    row("comment", ".a=1\n . b=2\na=.3", { "3|a|.3" });
    row("no other comment sign", ";a\n#b\n//c", { "1|;a", "2|#b", "3|//c" });
    row("continuation", "a=1&\n2\nb=3", { "1|a|12", "3|b|3" });
    row("continuation without a blank between", "a=1 &\n 2", { "1|a|1  2" });
    row("continuation with a carriage return", "a=1&\r\n2", { "1|a|12" });
    row("continuation over several lines", "a=&\nb&\nc", { "1|a|bc" });
    row("blank after the sign", "a=1& \nb=2", { "1|a|1&", "2|b|2" });
    row("sign only", "&\na=1", { "1|&", "2|a|1" });
    row("sign only goes on a continued line", "a=1&\n&\nb=2", { "1|a|1&", "3|b|2" });
    row("two signs", "a=1&&\n2", { "1|a|1&2" });
    row("continuation at the end is kept", "a=1&", { "1|a|1" });
    row("continuation at the end with a line feed", "a=1&\n", { "1|a|1" });
    row("a carriage return at the end of the text is part of the line's end", "a=1&\r", { "1|a|1" });
    row("empty continuation", "a=1&\n\nb=2", { "1|a|1", "3|b|2" });
    row("continued comment", ".a&\nb=1\nc=2", { "3|c|2" });
    row("section", "[Item]\n[Item] x\n[Item]=y\n  [Item]  ", { "1|[Item]", "2|[Item] x", "3|[Item]|y", "4|[Item]" });
}

void CSProTextLinesTest::linesAreCutIntoStatements()
{
    QFETCH(QByteArray, text);
    QTEST(statementsOf(text), "statements");
}

void CSProTextLinesTest::viewsStayValidOverContinuedLines()
{
    const std::string text = "first=1&\n1\nsecond=2&\n2\nthird=3\n";
    CSProTextLines lines(text);
    std::vector<Statement> statements;
    for (Statement statement; lines.next(statement);)
        statements.push_back(statement);
    QCOMPARE(statements.size(), size_t(3));
    QVERIFY(statements[0].value == "11");
    QVERIFY(statements[1].key == "second");
    QVERIFY(statements[1].value == "22");
}

void CSProTextLinesTest::aSectionBeginsWithABracket()
{
    QVERIFY((Statement{ "[Item]", "", 1, false }.isSection()));
    QVERIFY((Statement{ "[", "", 1, false }.isSection()));
    QVERIFY(!(Statement{ "Item", "", 1, false }.isSection()));
    QVERIFY(!(Statement{ "", "", 1, false }.isSection()));
}

void CSProTextLinesTest::keysAreComparedWithoutCase()
{
    QVERIFY(isSameKey("Name", "nAME"));
    QVERIFY(isSameKey("", ""));
    QVERIFY(!isSameKey("Name", "Names"));
    QVERIFY(!isSameKey("Name", "Nam_"));
    QVERIFY2(!isSameKey("\xC3\xA9", "\xC3\x89"), "letters beyond ASCII have a case, too");
    QVERIFY2(!isSameKey("@[", "`{"), "only letters have a case");
}

void CSProTextLinesTest::encodingIsThatOfTheMarkOrOfTheBytes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("encoding");
    QTest::addColumn<QByteArray>("text");
    const auto row = [](const char *name, const QByteArray &bytes, const char *encoding, const char *text) {
        QTest::newRow(name) << bytes << encoding << QByteArray(text);
    };
    row("nothing", "", "utf-8", "");
    row("ASCII", "[a]", "utf-8", "[a]");
    row("UTF-8 without a mark", "\xC3\xA9", "utf-8", "é");
    row("UTF-8 with a mark", "\xEF\xBB\xBF\xC3\xA9", "utf-8", "é");
    row("UTF-8 with two marks", "\xEF\xBB\xBF\xEF\xBB\xBFx", "utf-8", "\xEF\xBB\xBFx");
    row("no UTF-8", "caf\xE9 \x80", "windows-1252", "café €");
    row("UTF-8 with one bad byte", "\xC3\xA9\xE9", "windows-1252", "Ã©é");
    row("bad UTF-8 with a mark", "\xEF\xBB\xBF\xE9x", "utf-8", "\xEF\xBF\xBDx");
    row("UTF-16, low byte first", QByteArray("\xFF\xFE\xE9\0\x0A\0x\0", 8), "utf-16le", "é\nx");
    row("UTF-16, high byte first", QByteArray("\xFE\xFF\0\xE9\0\x0A\0x", 8), "utf-16be", "é\nx");
    row("UTF-16 with bytes of a line feed in other characters", QByteArray("\xFF\xFE\x0A\x01\x0A\0", 6), "utf-16le",
        "Ċ\n");
    row("UTF-16 with the second byte of a line feed", QByteArray("\xFE\xFF\x0A\x05\0\x0A", 6), "utf-16be", "ਅ\n");
    row("carriage returns without a line feed", "a\rb\r", "utf-8", "a\nb\n");
    row("carriage returns in UTF-16", QByteArray("\xFF\xFE\xE9\0\r\0\x0A\x01", 8), "utf-16le", "é\nĊ");
    row("carriage returns and a line feed", "a\rb\r\n", "utf-8", "a\rb\r\n");
    row("mark only", "\xEF\xBB\xBF", "utf-8", "");
}

void CSProTextLinesTest::encodingIsThatOfTheMarkOrOfTheBytes()
{
    QFETCH(QByteArray, bytes);
    const CSProTextContent content = decodeCSProText(bytes);
    QTEST(content.encoding, "encoding");
    QTEST(QByteArray(content.text().data(), int(content.text().size())), "text");
}

void CSProTextLinesTest::wellFormedUtf8IsNotCopied()
{
    const QByteArray bytes = "\xEF\xBB\xBF[Dictionary]";
    QVERIFY(decodeCSProText(bytes).text().data() == bytes.constData() + 3);
}

void CSProTextLinesTest::damagedLinesAreNumbered_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("UTF-8") << QByteArray("\xEF\xBB\xBF"
                                         "a\n\xFF\nb\n\xC3\n");
    QTest::newRow("Windows-1252") << QByteArray("\xE9\n\x81\nb\n\x9D\n");
    QTest::newRow("UTF-16, low byte first") << QByteArray("\xFF\xFE\xE9\0\n\0\0\xD8\n\0b\0\n\0x\0x", 17);
    QTest::newRow("UTF-16, high byte first") << QByteArray("\xFE\xFF\0\xE9\0\n\xD8\0\0\n\0b\0\n\0xx", 17);
    QTest::newRow("Windows-1252, carriage returns") << QByteArray("\xE9\r\x81\rb\r\x9D\r");
    QTest::newRow("UTF-8, carriage returns among line feeds") << QByteArray("\xEF\xBB\xBF"
                                                                            "a\n\r\xFF\r\nb\n\r\xC3\r");
    QTest::newRow("UTF-16, carriage returns") << QByteArray("\xFF\xFE\xE9\0\r\0\0\xD8\r\0b\0\r\0x\0x", 17);
}

void CSProTextLinesTest::damagedLinesAreNumbered()
{
    QFETCH(QByteArray, bytes);
    QCOMPARE(decodeCSProText(bytes).damagedLines, (std::vector<int>{ 2, 4 }));
}

QTEST_APPLESS_MAIN(CSProTextLinesTest)
#include "CSProTextLinesTest.moc"
