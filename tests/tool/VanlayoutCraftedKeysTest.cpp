#include "StatFile.h"
#include "support/CraftedKeys.h"
#include "support/ProcessorTime.h"
#include "support/ToolRun.h"

namespace
{

constexpr int count = 10000;

// Makes a file of many keys, which collide or do not collide in a hash.
using FileOf = QByteArray (*)(bool collide);

constexpr char head[]
    = "[Dictionary]\nVersion=CSPro 7.0\nName=D\nRecordTypeStart=1\nRecordTypeLen=1\n\n[Level]\nName=L\n\n";
constexpr char recordHead[] = "[Record]\nName=R\nRecordTypeValue='R'\n\n";

QByteArray lookupOf(bool collide)
{
    return crafted::keys(count, collide).join(" v\n").toUtf8() + " v\n";
}

QByteArray itemsNamed(const QStringList &names)
{
    QByteArray text = QByteArray(head) + recordHead;
    for (const QString &name : names)
        text += "[Item]\nLabel=" + name.toUtf8() + "\nName=" + name.toUtf8() + "\nStart=2\nLen=1\nDataType=Numeric\n\n";
    return text;
}

QByteArray items(bool collide)
{
    return itemsNamed(crafted::names(count, collide));
}

// A dictionary of items with names that a column can have unchanged.
QByteArray itemsOfLetters(bool collide)
{
    return itemsNamed(crafted::letterNames(count, collide));
}

// Each name occurs twice, so that a different one must be found for the second item.
QByteArray itemsTwice(bool collide)
{
    const QStringList names = crafted::names(count, collide);
    return itemsNamed(names + names);
}

// The same variables in another order and under other names.
QByteArray itemsInOtherOrder(bool collide)
{
    QStringList names = crafted::names(count, collide);
    std::reverse(names.begin(), names.end());
    return itemsNamed(names).replace("\nName=", "\nName=_");
}

QByteArray records(bool collide)
{
    QByteArray text(head);
    for (const QString &name : crafted::names(count, collide)) {
        const QByteArray bytes = name.toUtf8();
        text += "[Record]\nName=" + bytes + "\nRecordTypeValue='" + bytes + "'\n\n[Item]\nName=I" + bytes
            + "\nStart=2\nLen=1\nDataType=Numeric\n\n";
    }
    return text;
}

QByteArray valuesLabelled(bool collide, const QByteArray &label)
{
    QByteArray text
        = QByteArray(head) + recordHead + "[Item]\nName=I\nStart=2\nLen=8\nDataType=Alpha\n\n[ValueSet]\nName=S\n";
    for (const QString &code : crafted::names(count, collide))
        text += "Value='" + code.toUtf8() + "';" + label + '\n';
    return text;
}

QByteArray values(bool collide)
{
    return valuesLabelled(collide, "before");
}

QByteArray valuesWithOtherLabels(bool collide)
{
    return valuesLabelled(collide, "after");
}

// Each value set has a link of its own.
QByteArray links(bool collide)
{
    QByteArray text = QByteArray(head) + recordHead + "[Item]\nName=I\nStart=2\nLen=8\n";
    for (const QString &link : crafted::names(count, collide))
        text += "[ValueSet]\nName=S\nLink=" + link.toUtf8() + "\nValue=1\n";
    return text;
}

// A dictionary of records, in single quotes.
QByteArray jsonOfRecords(const QByteArray &records)
{
    const QByteArray text = "{'name':'D','recordType':{'start':1,'length':1},'levels':[{'name':'L','ids':{'items':[]},"
                            "'records':["
        + records + "]}]}";
    return QByteArray(text).replace('\'', '"');
}

QByteArray jsonValues(bool collide)
{
    QByteArrayList all;
    for (const QString &code : crafted::names(count, collide))
        all.append("{'labels':[{'text':'x'}],'pairs':[{'value':'" + code.toUtf8() + "'}]}");
    return jsonOfRecords("{'name':'R','recordType':'R','items':[{'name':'I','contentType':'alpha','length':8,"
                         "'valueSets':[{'name':'S','values':["
                         + all.join(',') + "]}]}]}");
}

// A record without items; each "=" may be the end of its name.
QByteArray jsonRecordOfSigns(bool collide)
{
    return jsonOfRecords("{'name':'" + QByteArray(100000, collide ? '=' : '-')
                         + "','recordType':'R','items':[]},"
                           "{'name':'S','recordType':'S','items':[{'name':'I','length':1}]}");
}

QByteArray spssValues(bool collide)
{
    StatFile file(StatFile::sav);
    readstat_label_set_t *set = file.textLabels("set", {});
    for (const QByteArray &code : crafted::byteNames(count, collide))
        readstat_label_string_value(set, code.constData(), "x");
    file.text("V", 8, "", nullptr, set);
    const std::string bytes = file.bytes();
    return QByteArray(bytes.data(), int(bytes.size()));
}

} // namespace

Q_DECLARE_METATYPE(FileOf)

/// Tests that files whose keys are made to collide in a hash take at most twice the time of others.
class VanlayoutCraftedKeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void craftedKeysTakeNoLonger_data()
    {
        QTest::addColumn<QStringList>("command"); // FILE and SECOND are replaced by the files
        QTest::addColumn<FileOf>("fileOf");
        QTest::addColumn<FileOf>("secondFileOf");
        const QStringList lookup = { "lookup", "FILE" };
        const QStringList explain = { "explain", "FILE" };
        const QStringList codebook = { "codebook", "-o", "out", "FILE" };
        const QStringList diff = { "diff", "FILE", "SECOND" };
        const QStringList concord = { "concord", "--format", "html", "-o", "out", "FILE", "SECOND" };
        const auto exportTo
            = [](const QString &form) { return QStringList{ "export", "--to", form, "-o", "out", "FILE" }; };
        const auto convertTo
            = [](const QString &form) { return QStringList{ "convert", "--to", form, "-o", "out", "FILE" }; };
        const QStringList lint = { "lint", "FILE" };
        const FileOf none = nullptr;
        QTest::newRow("keys of a lookup") << lookup << FileOf(lookupOf) << none;
        QTest::newRow("names in CSVW") << exportTo("csvw") << FileOf(itemsOfLetters) << none;
        QTest::newRow("names in a JSON Schema") << exportTo("json-schema") << FileOf(items) << none;
        QTest::newRow("names that are given twice") << exportTo("json-schema") << FileOf(itemsTwice) << none;
        QTest::newRow("records in DDI") << exportTo("ddi") << FileOf(records) << none;
        QTest::newRow("records in a codebook") << codebook << FileOf(records) << none;
        QTest::newRow("links in a dictionary") << convertTo("cspro-json") << FileOf(links) << none;
        QTest::newRow("names in a Stata file") << convertTo("dta") << FileOf(itemsTwice) << none;
        QTest::newRow("labels that are compared") << diff << FileOf(items) << FileOf(itemsInOtherOrder);
        QTest::newRow("value labels that are compared") << diff << FileOf(values) << FileOf(valuesWithOtherLabels);
        QTest::newRow("variables of rounds") << concord << FileOf(items) << FileOf(itemsInOtherOrder);
        QTest::newRow("codes of rounds") << concord << FileOf(values) << FileOf(valuesWithOtherLabels);
        QTest::newRow("notes of names") << explain << FileOf(itemsTwice) << none;
        QTest::newRow("notes of records") << explain << FileOf(records) << none;
        QTest::newRow("notes of codes in JSON") << explain << FileOf(jsonValues) << none;
        QTest::newRow("notes of codes in SPSS") << explain << FileOf(spssValues) << none;
        QTest::newRow("names that are checked") << lint << FileOf(itemsTwice) << none;
        QTest::newRow("record types that are checked") << lint << FileOf(records) << none;
        QTest::newRow("codes that are checked") << lint << FileOf(values) << none;
        QTest::newRow("signs in the name of a record") << codebook << FileOf(jsonRecordOfSigns) << none;
    }
    void craftedKeysTakeNoLonger()
    {
        QFETCH(QStringList, command);
        QFETCH(FileOf, fileOf);
        QFETCH(FileOf, secondFileOf);
        const ToolDirectory directory;
        for (const bool collide : { false, true }) {
            directory.write(nameOf("FILE", collide), fileOf(collide));
            if (secondFileOf)
                directory.write(nameOf("SECOND", collide), secondFileOf(collide));
        }
        Run ofCrafted;
        Run ofOthers;
        const TimeRatio ratio([&] { ofCrafted = run(directory, command, true); },
                              [&] { ofOthers = run(directory, command, false); });
        QVERIFY2(ofOthers.status == fine || ofOthers.status == finding, ofOthers.err.constData());
        QCOMPARE(ofCrafted.status, ofOthers.status);
        QVERIFY2(ratio.isAtMost(2), ratio.inWords().c_str());
    }

private:
    static QString nameOf(const QString &file, bool collide) { return file + (collide ? "-crafted" : "-other"); }

    static Run run(const ToolDirectory &directory, QStringList command, bool collide)
    {
        for (QString &word : command) {
            if (word == "FILE" || word == "SECOND")
                word = nameOf(word, collide);
        }
        return directory.run(command);
    }
};

QTEST_GUILESS_MAIN(VanlayoutCraftedKeysTest)
#include "VanlayoutCraftedKeysTest.moc"
