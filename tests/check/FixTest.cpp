#include "check/Fix.h"
#include "check/LintedText.h"
#include "support/Corpus.h"
#include "write/CSProJson.h"

#include <QtTest>

#include <QJsonDocument>
#include <QRandomGenerator>

using namespace linted;

namespace
{

CSProTextStyle plainStyle()
{
    CSProTextStyle style;
    style.lineEnd = CSProTextStyle::LineEnd::Lf;
    style.mark = CSProTextStyle::Mark::Absent;
    return style;
}

FixedDictionary fixedFrom(QByteArray content)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    return fixDictionary(readLayout(buffer, "survey.dcf"), plainStyle());
}

FixedDictionary fixedAfter(const QString &change)
{
    return fixedFrom(changed(baseDictionary(), change).toUtf8());
}

// A text dictionary with other record lengths, record types without their zeros if those are unique, and names before
// labels.
QByteArray brokenText(const QByteArray &content)
{
    QString text = QString::fromUtf8(content);
    text.replace(QRegularExpression("\nRecordLen=(\\d+)"), "\nRecordLen=1\\1");
    text.replace(QRegularExpression("\n(Label=[^\r\n]*)(\r?\n)(Name=[^\r\n]*)"), "\n\\3\\2\\1");
    QString shortened = text;
    shortened.replace(QRegularExpression("RecordTypeValue='0+([1-9]\\d*)'"), "RecordTypeValue='\\1'");
    return shortened.toUtf8();
}

} // namespace

/// Tests what a correction changes, and what it leaves.
class FixTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void soundDictionaryIsUnchanged()
    {
        const FixedDictionary fixed = fixedFrom(baseDictionary().toUtf8());
        QCOMPARE(fixed.problem, QString());
        QCOMPARE(QString::fromUtf8(fixed.bytes), baseDictionary());
    }

    void faultWithOneRightResultIsCorrected_data()
    {
        QTest::addColumn<QString>("change");
        QTest::newRow("record length too great") << "-RecordLen=6\n+RecordLen=60";
        QTest::newRow("record length too small") << "-RecordLen=26\n+RecordLen=3";
        QTest::newRow("no record length") << " RecordTypeValue='2'\n-RecordLen=6";
        QTest::newRow("order of keys") << "-Label=Rooms\n-Name=ROOMS\n-Start=5\n+Start=5\n+Name=ROOMS\n+Label=Rooms";
        QTest::newRow("case of keys") << "-Label=Rooms\n+LABEL=Rooms";
        QTest::newRow("no label key") << "-Label=Rooms\n+label =  Rooms  ";
    }
    void faultWithOneRightResultIsCorrected()
    {
        QFETCH(QString, change);
        const FixedDictionary fixed = fixedAfter(change);
        QCOMPARE(fixed.problem, QString());
        QCOMPARE(QString::fromUtf8(fixed.bytes), baseDictionary());
    }

    void shortRecordTypeOfDigitsGetsZeros()
    {
        const QString wide
            = changed(baseDictionary(),
                      "-RecordTypeLen=1\n+RecordTypeLen=3\n Positions=Absolute\n@@\n-Start=2\n-Len=3\n+Start=27\n"
                      "+Len=3\n@@\n-RecordTypeValue='1'\n+RecordTypeValue='01'\n@@\n-RecordTypeValue='2'\n"
                      "+RecordTypeValue='A'");
        QVERIFY(!wide.isEmpty());
        const FixedDictionary fixed = fixedFrom(wide.toUtf8());
        QCOMPARE(fixed.problem, QString());
        QVERIFY(fixed.bytes.contains("RecordTypeValue='001'\n"));
        QVERIFY(fixed.bytes.contains("RecordTypeValue='A'\n")); // no digits: ambiguous
    }

    void recordTypesThatWouldBeEqualAreLeft()
    {
        const FixedDictionary fixed = fixedAfter("-RecordTypeLen=1\n+RecordTypeLen=2\n@@\n-RecordTypeValue='2'\n"
                                                 "+RecordTypeValue='01'");
        QCOMPARE(fixed.problem, QString());
        QVERIFY(fixed.bytes.contains("RecordTypeValue='1'\n"));
        QVERIFY(fixed.bytes.contains("RecordTypeValue='01'\n"));
    }

    void whatIsAmbiguousIsNotChanged_data()
    {
        QTest::addColumn<QString>("change");
        QTest::newRow("overlap") << " Name=SEX\n-Start=5\n+Start=4";
        QTest::newRow("wide code") << "-Value=2;Female\n+Value=20;Female";
        QTest::newRow("reversed range") << "-Value=0:20;Years\n+Value=20:0;Years";
        QTest::newRow("duplicate name") << "-Name=ROOMS\n+Name=SEX";
        QTest::newRow("no positions") << "-Positions=Absolute\n ZeroFill=No";
        QTest::newRow("long record type") << "-RecordTypeValue='2'\n+RecordTypeValue='002'";
    }
    void whatIsAmbiguousIsNotChanged()
    {
        QFETCH(QString, change);
        const FixedDictionary fixed = fixedAfter(change);
        QCOMPARE(fixed.problem, QString());
        QCOMPARE(QString::fromUtf8(fixed.bytes), changed(baseDictionary(), change));
    }

    void statementThatWouldBeLostIsRefused_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<QString>("reason");
        QTest::newRow("unknown key") << " Name=ROOMS\n+Width=2"
                                     << "\"Width\"";
        QTest::newRow("repeated key") << " Name=ROOMS\n+Name=SECOND"
                                      << "more than once";
        QTest::newRow("bad number") << "-MaxRecords=20\n+MaxRecords=many"
                                    << "many";
        QTest::newRow("unknown type") << " Name=ROOMS\n Start=5\n Len=2\n-DataType=Numeric\n+DataType=Integer"
                                      << "Integer";
    }
    void statementThatWouldBeLostIsRefused()
    {
        QFETCH(QString, change);
        QFETCH(QString, reason);
        const FixedDictionary fixed = fixedAfter(change);
        QVERIFY2(fixed.problem.contains("cannot be corrected") && fixed.problem.contains(reason),
                 qPrintable(fixed.problem));
        QVERIFY(fixed.bytes.isEmpty());
    }

    void jsonIsPutIntoTheOrderOfCSPro()
    {
        const FixedDictionary fixed = fixedFrom("{\"levels\": [], \"name\": \"D\", \"relativePositions\": true, "
                                                "\"labels\": [{\"text\": \"Survey\"}], \"version\": 8.0, "
                                                "\"recordType\": {\"start\": 0, \"length\": 0}}");
        QCOMPARE(fixed.problem, QString());
        QVERIFY(fixed.bytes.indexOf("\"version\"") < fixed.bytes.indexOf("\"name\""));
        QVERIFY(fixed.bytes.indexOf("\"name\"") < fixed.bytes.indexOf("\"levels\""));
    }

    void fileThatIsNoDictionaryIsRefused()
    {
        Layout layout;
        layout.format = Format::Stata;
        QVERIFY(fixDictionary(layout).problem.contains("is not a CSPro dictionary"));
        layout.format = Format::CSProText;
        layout.container = "csdb";
        QVERIFY(fixDictionary(layout).problem.contains("is not a CSPro dictionary"));
    }

    void widthOfRecordTypesIsBounded()
    {
        const FixedDictionary fixed = fixedAfter("-RecordTypeLen=1\n+RecordTypeLen=2000000000");
        QVERIFY(fixed.bytes.contains("RecordTypeValue='1'\n"));
    }

    void dataFileIsRefusedWithAnAdvice()
    {
        Layout layout;
        layout.format = Format::CSProJson;
        layout.container = "csdb";
        QVERIFY(fixDictionary(layout).problem.contains("write its dictionary with vanlayout convert"));
        layout.container.clear();
        layout.format = Format::Ddi;
        QCOMPARE(fixDictionary(layout).problem,
                 QString("is not a CSPro dictionary in text or JSON form, and cannot be corrected"));
    }

    void lengthThatIsUnknownOrTooLongIsLeft_data()
    {
        QTest::addColumn<QString>("change");
        QTest::newRow("no start") << " Name=ROOMS\n-Start=5\n Len=2\n DataType=Numeric";
        QTest::newRow("column 32001") << " Name=ROOMS\n-Start=5\n-Len=2\n+Start=32001\n+Len=1";
    }
    void lengthThatIsUnknownOrTooLongIsLeft()
    {
        QFETCH(QString, change);
        const FixedDictionary fixed = fixedAfter(change);
        QCOMPARE(fixed.problem, QString());
        QVERIFY(fixed.bytes.contains("RecordLen=6\n"));
    }

    void labelsMisreadEarlierAreKept()
    {
        const QString text = baseDictionary().replace("Label=Rooms", QString::fromUtf8("Label=PiÃ¨ces"));
        QCOMPARE(fixedFrom(text.toUtf8()).bytes, text.toUtf8());
        const QByteArray both = text.toUtf8().replace("Village", "Vill\xE9ge");
        QVERIFY(fixedFrom(both).problem.contains("the label has"));
    }

    void correctionOfChangedBytesIsStable_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("text") << baseDictionary().toUtf8();
        QByteArray text = baseDictionary().toUtf8();
        QBuffer source(&text);
        source.open(QIODevice::ReadOnly);
        QBuffer json;
        json.open(QIODevice::WriteOnly);
        QVERIFY(writeCSProJson(readLayout(source, "survey.dcf"), json));
        QTest::newRow("JSON") << json.data();
    }
    void correctionOfChangedBytesIsStable()
    {
        QFETCH(QByteArray, text);
        QRandomGenerator random(19);
        int count = 0;
        for (int round = 0; round < 250; ++round) {
            QByteArray bytes = text;
            for (int change = 0; change < 3; ++change) {
                int place = random.bounded(int(bytes.size()));
                const bool isDigitChanged = random.bounded(10) > 0;
                while (isDigitChanged && place + 1 < bytes.size() && !isdigit(uchar(bytes.at(place))))
                    ++place;
                bytes[place] = char('0' + random.bounded(10));
            }
            const FixedDictionary fixed = fixedFrom(bytes);
            if (!fixed.problem.isEmpty())
                continue;
            ++count;
            const FixedDictionary again = fixedFrom(fixed.bytes);
            QVERIFY2(again.problem.isEmpty(), qPrintable(QString::fromUtf8(bytes) + again.problem));
            QCOMPARE(QString::fromUtf8(again.bytes), QString::fromUtf8(fixed.bytes));
        }
        QVERIFY(count > 20);
    }

    void correctionOfABrokenDictionaryIsThatOfTheOriginal_data() { correctionOfACorrectedDictionaryIsTheSame_data(); }
    void correctionOfABrokenDictionaryIsThatOfTheOriginal()
    {
        QFETCH(QString, path);
        QFile file(path);
        if (path.isEmpty() || !file.open(QIODevice::ReadOnly))
            return;
        const QByteArray content = file.readAll();
        const QByteArray broken
            = content.trimmed().startsWith('{') ? QJsonDocument::fromJson(content).toJson() : brokenText(content);
        QVERIFY(broken != content);
        const FixedDictionary fixed = fixedFrom(broken);
        QCOMPARE(fixed.problem, QString());
        QCOMPARE(fixed.bytes, fixedFrom(content).bytes);
    }

    void correctionOfACorrectedDictionaryIsTheSame_data()
    {
        QTest::addColumn<QString>("path");
        const QStringList paths = corpusFiles("cspro-text") + corpusFiles("cspro-json");
        for (const QString &path : paths)
            QTest::newRow(qPrintable(QFileInfo(path).fileName())) << path;
        if (paths.isEmpty())
            QTest::newRow("no corpus") << QString();
    }
    void correctionOfACorrectedDictionaryIsTheSame()
    {
        QFETCH(QString, path);
        QFile file(path);
        if (path.isEmpty() || !file.open(QIODevice::ReadOnly))
            return;
        const FixedDictionary fixed = fixedFrom(file.readAll());
        QCOMPARE(fixed.problem, QString());
        QCOMPARE(fixedFrom(fixed.bytes).bytes, fixed.bytes);
    }
};

QTEST_APPLESS_MAIN(FixTest)
#include "FixTest.moc"
