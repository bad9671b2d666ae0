#include "support/Corpus.h"
#include "support/OrdinaryUser.h"
#include "support/ReadPipe.h"
#include "support/ToolRun.h"

#include <QtTest>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

namespace
{

// What stands between two texts, the first behind which there is one.
QByteArray between(const QByteArray &whole, const QByteArray &before, const QByteArray &behind)
{
    const int begin = whole.indexOf(before) + before.size();
    return whole.mid(begin, whole.indexOf(behind, begin) - begin);
}

QByteArray scriptOf(const QByteArray &page)
{
    return between(page, "<script>", "</script>");
}

QByteArray dataTextOf(const QByteArray &page)
{
    return between(page, "<script type=\"application/json\" id=\"page-data\">", "</script>");
}

QJsonObject dataOf(const QByteArray &page)
{
    return QJsonDocument::fromJson(dataTextOf(page)).object();
}

// The value labels of a variable of the data, each as code and label.
QVector<QStringList> labelsOf(const QJsonObject &data, const QJsonObject &variable)
{
    QVector<QStringList> labels;
    if (!variable.contains("labels"))
        return labels;
    const QJsonArray set = data["labelSets"].toArray().at(variable["labels"].toInt()).toArray();
    for (int i = 0; i + 1 < set.size(); i += 2)
        labels.append({ set.at(i).toString(), set.at(i + 1).toString() });
    return labels;
}

// The records of the data, each as name and type.
QStringList recordsOf(const QByteArray &page)
{
    QStringList records;
    for (const auto &group : dataOf(page)["groups"].toArray())
        records.append(group.toObject()["name"].toString() + '/' + group.toObject()["type"].toString());
    return records;
}

// A CSPro 8 dictionary of these records, each with its name, its type and one variable.
QByteArray dictionaryOfRecords(const QList<QByteArrayList> &records)
{
    QByteArrayList written;
    for (const QByteArrayList &record : records)
        written.append("{ \"name\": \"" + record.at(0) + "\", \"recordType\": \"" + record.at(1)
                       + "\", \"items\": [ { \"name\": \"" + record.at(2)
                       + "\", \"labels\": [ { \"text\": \"L\" } ], \"contentType\": \"numeric\", \"start\": 2, "
                         "\"length\": 2 } ] }");
    return "{ \"recordType\": { \"start\": 1, \"length\": 1 }, \"levels\": [ { \"name\": \"L\", \"ids\": { "
           "\"items\": [] }, \"records\": [ "
        + written.join(", ") + " ] } ] }";
}

// A dictionary of one variable with a label and a value label.
QString dictionaryTextWith(const QString &label, const QString &valueLabel)
{
    return QStringLiteral(
               "[Dictionary]\nVersion=CSPro 7.7\nLabel=D\nName=D\nRecordTypeStart=0\nRecordTypeLen=0\n"
               "Positions=Absolute\nZeroFill=Yes\nDecimalChar=No\n\n[Level]\nLabel=L\nName=L\n\n[IdItems]\n\n"
               "[Item]\nLabel=%1\nName=ODD\nStart=1\nLen=2\nDataType=Numeric\n\n"
               "[ValueSet]\nLabel=V\nName=V\nValue=1;%2\n")
        .arg(label, valueLabel);
}

QByteArray dictionaryWith(const QString &label, const QString &valueLabel)
{
    return dictionaryTextWith(label, valueLabel).toUtf8();
}

} // namespace

/// `vanlayout codebook`, run as a user runs it. That the page works is for the test in a browser.
class VanlayoutCodebookTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyVariableAndLabelIsInThePage_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("title");
        QTest::newRow("cspro") << QStringLiteral(VAN_EXAMPLES "/census.dcf") << "CSPro text dictionary";
        QTest::newRow("cspro8") << QStringLiteral(VAN_EXAMPLES "/census8.dcf") << "CSPro 8 JSON dictionary";
        QTest::newRow("spss") << QStringLiteral(VAN_MADE_DATA "/types.sav") << "SPSS file";
        QTest::newRow("stata") << QStringLiteral(VAN_MADE_DATA "/types-118.dta") << "Stata file";
    }
    void everyVariableAndLabelIsInThePage()
    {
        QFETCH(QString, file);
        QFETCH(QString, title);
        const QByteArray page = pageOf(file);
        QVERIFY(page.contains("<p class=\"format\">" + title.toUtf8() + "</p>"));
        const QJsonObject data = dataOf(page);
        const QJsonArray variables = data["variables"].toArray();
        const Run shown = folder.run({ "fields", "--format", "json", file });
        const QJsonArray fields = shown.json()["fields"].toArray();
        QVERIFY(!fields.isEmpty());
        QCOMPARE(variables.size(), fields.size());
        int labelCount = 0;
        for (int i = 0; i < fields.size(); ++i) {
            const QJsonObject variable = variables.at(i).toObject();
            const QJsonObject field = fields.at(i).toObject();
            for (const char *text : { "name", "label", "type", "minimum", "maximum", "notApplicable", "missing" })
                QCOMPARE(variable[text].toString(), field[text].toString());
            for (const char *number : { "start", "length", "decimals" })
                QCOMPARE(variable[number].toInt(), field[number].toInt());
            const QJsonObject group = data["groups"].toArray().at(variable["group"].toInt()).toObject();
            QCOMPARE(group["name"].toString(), field["group"].toString());
            QVector<QStringList> expected;
            for (const auto &label : field["valueLabels"].toArray())
                expected.append({ label.toObject()["code"].toString(), label.toObject()["label"].toString() });
            QCOMPARE(labelsOf(data, variable), expected);
            labelCount += expected.size();
        }
        QVERIFY(page.contains("<li><b>" + QByteArray::number(fields.size()) + "</b> variables</li>"));
        QVERIFY(page.contains("<li><b>" + QByteArray::number(labelCount) + "</b> value labels</li>"));
    }

    void recordsHaveTheirTypes()
    {
        const QByteArray page = pageOf(QStringLiteral(VAN_EXAMPLES "/census.dcf"));
        const QJsonObject data = dataOf(page);
        QCOMPARE(recordsOf(page), (QStringList{ "Common/", "HOUSING/H", "POPULATION/P", "MORTALITY/M" }));
        QCOMPARE(data["recordType"].toObject()["start"].toInt(), 1);
        QCOMPARE(data["recordType"].toObject()["length"].toInt(), 1);
    }

    void onlyRecordOfALayoutHasItsVariables()
    {
        folder.write("one.dcf",
                     "[Dictionary]\nVersion=CSPro 7.7\nName=D\nRecordTypeStart=0\nRecordTypeLen=0\n\n[Record]\n"
                     "Name=ONE\nRecordTypeValue=\n\n[Item]\nLabel=A\nName=A\nStart=1\nLen=1\n\n"
                     "[Item]\nLabel=B\nName=B\nStart=2\nLen=1\n");
        QVERIFY(folder.run({ "codebook", "one.dcf", "-o", "page.html" }).status == fine);
        const QByteArray page = folder.read("page.html");
        QCOMPARE(recordsOf(page), QStringList("ONE/"));
        const QJsonArray variables = dataOf(page)["variables"].toArray();
        QCOMPARE(variables.size(), 2);
        for (const auto &variable : variables)
            QCOMPARE(variable.toObject()["group"].toInt(), 0);
        QVERIFY(page.contains("<li><b>1</b> record</li>"));
    }

    void nameAndTypeOfARecordCanHoldAnEqualsSign()
    {
        folder.write("signs.dcf", dictionaryOfRecords({ { "A=B", "1", "X" }, { "A", "=", "Y" } }));
        QCOMPARE(folder.run({ "codebook", "signs.dcf", "-o", "page.html" }).status, fine);
        QCOMPARE(recordsOf(folder.read("page.html")), (QStringList{ "A=B/1", "A/=" }));
    }

    void recordsThatShareANameTellAllTheirTypes()
    {
        folder.write("shared.dcf", dictionaryOfRecords({ { "A", "1", "X" }, { "A", "2", "Y" } }));
        QCOMPARE(folder.run({ "codebook", "shared.dcf", "-o", "page.html" }).status, fine);
        QCOMPARE(recordsOf(folder.read("page.html")), QStringList("A/1, 2"));
    }

    void lengthsAreWidthsInCharactersInDictionariesAlone()
    {
        folder.write("plain.dcf", dictionaryWith("L", "One"));
        QVERIFY(dataOf(pageOf("plain.dcf"))["inColumns"].toBool());
        for (const char *name : { "types.sav", "types-118.dta" }) {
            const QJsonObject data = dataOf(pageOf(QStringLiteral(VAN_MADE_DATA "/") + name));
            QVERIFY2(data["inColumns"].isBool() && !data["inColumns"].toBool(), name);
        }
    }

    // More than an int holds, in a moment: occurrences share their value labels.
    void valueLabelsAreCountedForEachVariable()
    {
        constexpr int labels = 2000;
        QByteArray text = dictionaryWith("L", "One")
            + "\n[Item]\nLabel=M\nName=M\nStart=3\nLen=5\nDataType=Numeric\nOccurrences=2000\n\n"
              "[ValueSet]\nLabel=V\nName=V\n"; // the most that a dictionary may ask for
        for (int i = 0; i < labels; ++i)
            text += "Value=" + QByteArray::number(i) + ";Place\n";
        folder.write("many.dcf", text);
        QCOMPARE(folder.run({ "codebook", "many.dcf", "-o", "page.html" }).status, fine);
        QVERIFY(folder.read("page.html").contains("<li><b>4,000,001</b> value labels</li>"));
    }

    void equalValueLabelsStandOnce()
    {
        const QJsonObject data = dataOf(pageOf(QStringLiteral(VAN_EXAMPLES "/occurrences.dcf")));
        QCOMPARE(data["labelSets"].toArray().size(), 1);
        int uses = 0;
        for (const auto &variable : data["variables"].toArray())
            uses += variable.toObject().contains("labels");
        QVERIFY(uses > 1);
    }

    void notesStandInThePage()
    {
        // Two value sets; the second is not read.
        folder.write("notes.dcf", dictionaryWith("L", "One") + "\n[ValueSet]\nLabel=W\nName=W\nValue=2;Two\n");
        const QByteArray page = pageOf("notes.dcf");
        const QJsonObject data = dataOf(page);
        const QJsonArray kinds = data["kinds"].toArray();
        int lost = 0;
        bool isFound = false;
        for (const auto &value : data["notes"].toArray()) {
            const QJsonArray note = value.toArray();
            const QJsonObject kind = kinds.at(note.at(0).toInt()).toObject();
            lost += kind["gravity"].toString() == "lost";
            if (kind["id"].toString() != "further-value-set")
                continue;
            isFound = true;
            QVERIFY(kind["sentence"].toString().contains("value set"));
            QCOMPARE(kind["count"].toInt(), 1);
            QVERIFY(note.at(1).toInt() > 0);
            QCOMPARE(note.at(2).toString(), QString("ODD"));
        }
        QVERIFY(isFound);
        QVERIFY(page.contains("<a href=\"#page-lost\"><b>" + QByteArray::number(lost) + "</b> lost</a>"));
    }

    void everyNoteOfTheReportIsInThePage_data()
    {
        QTest::addColumn<QString>("file");
        for (const char *name : { "census.dcf", "census8.dcf", "marks.dcf", "occurrences.dcf", "subitems.dcf" })
            QTest::newRow(name) << QStringLiteral(VAN_EXAMPLES "/") + QLatin1String(name);
        for (const char *name : { "types.sav", "types-118.dta" })
            QTest::newRow(name) << QStringLiteral(VAN_MADE_DATA "/") + QLatin1String(name);
    }
    void everyNoteOfTheReportIsInThePage()
    {
        QFETCH(QString, file);
        const QByteArray page = pageOf(file);
        const QJsonObject data = dataOf(page);
        const QJsonObject told
            = QJsonDocument::fromJson(folder.run({ "explain", "--all", "--format", "json", file }).out).object();
        QStringList expected;
        for (const auto &note : told["notes"].toArray()) {
            QStringList parts;
            for (const char *key : { "kind", "gravity", "sentence", "line", "variable", "text" })
                parts.append(note.toObject()[key].toVariant().toString());
            expected.append(parts.join('|'));
        }
        QVERIFY(!expected.isEmpty());
        QStringList notes;
        for (const auto &value : data["notes"].toArray()) {
            const QJsonArray note = value.toArray();
            const QJsonObject kind = data["kinds"].toArray().at(note.at(0).toInt()).toObject();
            QStringList parts{ kind["id"].toString(), kind["gravity"].toString(), kind["sentence"].toString() };
            for (int i = 1; i < note.size(); ++i)
                parts.append(note.at(i).toVariant().toString());
            notes.append(parts.join('|'));
        }
        expected.sort();
        notes.sort();
        QCOMPARE(notes, expected);
        for (const char *gravity : { "lost", "changed", "curious" }) {
            const int count = told[gravity].toInt();
            const QByteArray link
                = QByteArray("<a href=\"#page-") + gravity + "\"><b>" + QByteArray::number(count) + "</b>";
            QCOMPARE(page.contains(link), count > 0);
        }
    }

    void fileWithoutNotesSaysSo()
    {
        folder.write("plain.dcf", dictionaryWith("L", "One"));
        const QByteArray page = pageOf("plain.dcf");
        QVERIFY(dataOf(page)["variables"].isArray());
        QVERIFY(dataOf(page)["notes"].toArray().isEmpty());
        QVERIFY(page.contains("<li><b>0</b> notes</li>"));
    }

    void notesBeyondTheMostAreCountedAlone()
    {
        constexpr int most = 100000;
        constexpr int further = 10;
        QByteArray text = dictionaryWith("L", "One") + "\n[Item]\nLabel=A\nName=A\nStart=3\nLen=1\nDataType=Numeric\n";
        for (int i = 0; i < most + further; ++i)
            text += "Other=\n";
        folder.write("notes.dcf", text);
        const QByteArray page = pageOf("notes.dcf");
        const QJsonObject data = dataOf(page);
        QCOMPARE(data["notes"].toArray().size(), most);
        QCOMPARE(data["kinds"].toArray().at(0).toObject()["count"].toInt(), most + further);
        QVERIFY(page.contains("<a href=\"#page-lost\"><b>100,010</b> lost</a>"));
    }

    void labelIsOnlyText_data()
    {
        QTest::addColumn<QString>("label");
        QTest::newRow("script") << "<script>alert(1)</script>";
        QTest::newRow("end of the script") << "</script><script>alert(1)</script>";
        QTest::newRow("comment") << "<!-- <script> -->";
        QTest::newRow("ampersand") << "R&amp;D & &lt;b&gt;";
        QTest::newRow("quotes") << "\"double\" 'single' \\ back";
        QTest::newRow("line separator") << QString("a") + QChar(0x2028) + 'b' + QChar(0x2029) + 'c';
        QTest::newRow("control characters") << QString("a") + QChar(1) + QChar(0x1B) + QChar(0x7F) + QChar(0x85) + 'b';
        QTest::newRow("no character") << QString("a") + QChar(0xFFFE) + 'b';
        QTest::newRow("right to left") << QString::fromUtf8(
            "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \xD8\xB3\xD9\x84\xD8\xA7\xD9\x85");
        QTest::newRow("beyond 16 bits") << QString::fromUtf8("\xF0\x9F\x8F\xA0 house");
        QTest::newRow("braces of the template") << "{{script}} {{data}}";
    }
    void labelIsOnlyText()
    {
        QFETCH(QString, label);
        folder.write("odd.dcf", dictionaryWith(label, label));
        const QByteArray page = pageOf("odd.dcf");
        const QJsonObject data = dataOf(page);
        const QJsonObject variable = data["variables"].toArray().at(0).toObject();
        // As the library holds it, which JSON can tell in full.
        const Run shown = folder.run({ "fields", "--format", "json", "odd.dcf" });
        const QJsonObject field = shown.json()["fields"].toArray().at(0).toObject();
        QVERIFY(!field["label"].toString().isEmpty());
        QCOMPARE(variable["label"].toString(), field["label"].toString());
        QCOMPARE(labelsOf(data, variable).value(0).value(1),
                 field["valueLabels"].toArray().at(0).toObject()["label"].toString());
        // Two scripts, the data and the page's own, whatever a label holds.
        QCOMPARE(page.count("<script"), 2);
        QCOMPARE(page.count("</script"), 2);
        QVERIFY(isHarmless(dataTextOf(page)));
    }

    void halfOfASurrogatePairIsAnEscape()
    {
        const QString text = dictionaryTextWith(QString("a") + QChar(0xD83D) + 'b', QString(QChar(0xDE00)) + "z");
        folder.write("half.dcf", inUtf16(text));
        const QByteArray data = dataTextOf(pageOf("half.dcf"));
        QVERIFY2(data.contains("\"label\":\"a\\ud83db\""), data.constData());
        QVERIFY2(data.contains("\\ude00z"), data.constData());
        QVERIFY(isHarmless(data));
    }

    void occurrenceSuffixIsAnEscape()
    {
        const QByteArray data = dataTextOf(pageOf(QStringLiteral(VAN_EXAMPLES "/occurrences.dcf")));
        QVERIFY(data.contains("\"name\":\"BARLEY_\\u0001\""));
        QVERIFY(isHarmless(data));
    }

    void fileNameIsOnlyText()
    {
        const QString name = "<b>&\"{{data}}\033.dcf";
        folder.write(name, dictionaryWith("L", "One"));
        const QByteArray page = pageOf(name);
        QCOMPARE(page.count("&lt;b&gt;&amp;&quot;{{data}}\xE2\x90\x9B.dcf"), 2); // in title and heading
        QVERIFY(!page.contains("<b>&\""));
        QVERIFY(!page.contains('\033'));
    }

    void pageNeedsNothingBesideIt()
    {
        const QByteArray page = pageOf(QStringLiteral(VAN_EXAMPLES "/census.dcf"));
        const QByteArray frame = QByteArray(page).replace(dataTextOf(page), QByteArray());
        QVERIFY(!frame.contains("://"));
        QVERIFY(!frame.contains("@import"));
        QVERIFY(!frame.contains("url("));
        QVERIFY(!frame.contains(" src="));
        QVERIFY(!frame.contains("<link"));
        QVERIFY(!frame.contains("{{")); // nothing of the template is left
        for (const char *name : { "innerHTML", "outerHTML", "insertAdjacentHTML", "document.write", "eval(" })
            QVERIFY2(!scriptOf(page).contains(name), name);
        auto links = QRegularExpression("href=\"([^\"]*)\"").globalMatch(QString::fromUtf8(frame));
        QVERIFY(links.hasNext());
        while (links.hasNext())
            QVERIFY(links.next().captured(1).startsWith('#'));
    }

    void policyAllowsThePagesOwnStyleAndScriptAlone()
    {
        const QByteArray page = pageOf(QStringLiteral(VAN_EXAMPLES "/census.dcf"));
        const QByteArray policy = between(page, "http-equiv=\"Content-Security-Policy\" content=\"", "\"");
        const auto sourceOf = [](const QByteArray &content) {
            const QByteArray hash = QCryptographicHash::hash(content, QCryptographicHash::Sha256);
            return "'sha256-" + hash.toBase64() + '\'';
        };
        QCOMPARE(policy,
                 "default-src 'none'; style-src " + sourceOf(between(page, "<style>", "</style>")) + "; script-src "
                     + sourceOf(scriptOf(page)) + "; base-uri 'none'; form-action 'none'");
        QVERIFY(!page.contains(" style=\"")); // it would be forbidden
    }

    void pageIsUtf8AndSaysSo()
    {
        folder.write("letters.dcf", dictionaryWith(QString::fromUtf8("Wohnverh\xC3\xA4ltnisse"), "x"));
        const QByteArray page = pageOf("letters.dcf");
        QVERIFY(page.startsWith("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"));
        QVERIFY(page.contains("Wohnverh\xC3\xA4ltnisse"));
        QVERIFY(page.contains("<noscript>"));
    }

    void sameFileGivesTheSamePage()
    {
        const QString file = QStringLiteral(VAN_EXAMPLES "/census.dcf");
        const QByteArray page = pageOf(file);
        QVERIFY(page == pageOf(file));
        const Run toOutput = folder.run({ "codebook", file, "-o", "-" });
        QCOMPARE(toOutput.status, fine);
        QVERIFY(toOutput.out == page);
    }

    void decimalsAreAnswered()
    {
        const QString file = QStringLiteral(VAN_EXAMPLES "/decimals.dcf");
        const auto setsFor = [&](const char *answer) {
            const Run made = folder.run({ "codebook", "--decimals", answer, file, "-o", "-" });
            return dataOf(made.out)["labelSets"].toArray();
        };
        QVERIFY(setsFor("yes") != setsFor("no"));
    }

    void noAnswerIsStatus2AndOneLineAndNoPage_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("problem");
        const QStringList toPage = { "-o", "page.html" };
        QTest::newRow("absent") << QStringList("absent.dcf") + toPage << QByteArray("absent.dcf: no such file\n");
        QTest::newRow("folder") << QStringList(".") + toPage << QByteArray(".: is a folder\n");
        QTest::newRow("empty name") << QStringList("") + toPage << QByteArray("'': no such file\n");
        QTest::newRow("no variable") << QStringList("empty.dcf") + toPage
                                     << QByteArray("empty.dcf: no variable found, read as ");
        QTest::newRow("another type") << (QStringList{ "--type", "stata", "fine.dcf" } + toPage)
                                      << QByteArray("fine.dcf: no variable found, read as ");
        QTest::newRow("no file") << toPage << QByteArray();
        QTest::newRow("no page") << QStringList("fine.dcf") << QByteArray();
        QTest::newRow("two files") << (QStringList{ "fine.dcf", "fine.dcf" } + toPage) << QByteArray();
        QTest::newRow("question") << (QStringList{ "--decimals", "ask", "fine.dcf" } + toPage) << QByteArray();
        QTest::newRow("output is a folder")
            << QStringList{ "fine.dcf", "-o", "." } << QByteArray(".: cannot be written: ");
        QTest::newRow("output without a name")
            << QStringList{ "fine.dcf", "-o", "" } << QByteArray("'': no such file\n");
        QTest::newRow("output in an absent folder") << QStringList{ "fine.dcf", "-o", "absent/page.html" }
                                                    << QByteArray("absent/page.html: cannot be written: ");
        QTest::newRow("output is the input")
            << QStringList{ "fine.dcf", "-o", "./fine.dcf" }
            << QByteArray("./fine.dcf: is the file to read, and is not written over\n");
        QTest::newRow("output is a link to the input")
            << QStringList{ "fine.dcf", "-o", "link" }
            << QByteArray("link: is the file to read, and is not written over\n");
        QTest::newRow("output is another name of the input")
            << QStringList{ "fine.dcf", "-o", "hard" }
            << QByteArray("hard: is the file to read, and is not written over\n");
    }
    void noAnswerIsStatus2AndOneLineAndNoPage()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, problem);
        folder.write("empty.dcf", QByteArray());
        folder.write("fine.dcf", dictionaryWith("L", "One"));
        QFile::remove(folder.filePath("page.html"));
        QFile::remove(folder.filePath("link"));
        QVERIFY(QFile::link("fine.dcf", folder.filePath("link")));
        giveAnotherName("fine.dcf", "hard");
        const QStringList before = QDir(folder.path()).entryList();
        const Run made = folder.run(QStringList("codebook") + arguments);
        verifyComplaint(made, problem);
        QCOMPARE(made.out, QByteArray());
        QCOMPARE(QDir(folder.path()).entryList(), before);
        QCOMPARE(folder.read("fine.dcf"), dictionaryWith("L", "One"));
    }

    void pageThatStoodThereStaysWithoutAnAnswer()
    {
        folder.write("page.html", "old");
        QCOMPARE(folder.run({ "codebook", "absent.dcf", "-o", "page.html" }).status, noAnswer);
        QCOMPARE(folder.read("page.html"), QByteArray("old"));
    }

    void writtenPageReplacesWhatStoodThere()
    {
        folder.write("fine.dcf", dictionaryWith("L", "One"));
        const QByteArray page = pageOf("fine.dcf");
        folder.write("page.html", QByteArray(1 << 20, 'x'));
        QCOMPARE(folder.run({ "codebook", "fine.dcf", "-o", "page.html" }).status, fine);
        QVERIFY(folder.read("page.html") == page);
        QVERIFY(page.endsWith("</html>\n"));
    }

    void linkStaysAndItsFileGetsThePage_data() { addWhatStandsThere(); }
    void linkStaysAndItsFileGetsThePage()
    {
        QFETCH(bool, isThere);
        folder.write("fine.dcf", dictionaryWith("L", "One"));
        const QByteArray page = pageOf("fine.dcf");
        const QTemporaryDir room(folder.filePath("room"));
        const QString target = room.filePath("target.html");
        const QString link = room.filePath("link.html");
        if (isThere)
            folder.write(target, "old");
        QVERIFY(QFile::link("target.html", link));
        QCOMPARE(folder.run({ "codebook", "fine.dcf", "-o", link }).status, fine);
        QCOMPARE(QFileInfo(link).symLinkTarget(), target);
        QVERIFY(!QFileInfo(target).isSymLink());
        QVERIFY(folder.read(target) == page);
        QCOMPARE(QDir(room.path()).entryList(QDir::Files | QDir::System), (QStringList{ "link.html", "target.html" }));
    }

    void pipeIsWrittenToAndStays_data()
    {
        QTest::addColumn<QString>("output");
        QTest::newRow("pipe") << "pipe";
        QTest::newRow("link to a pipe") << "link";
    }
    void pipeIsWrittenToAndStays()
    {
        QFETCH(QString, output);
        folder.write("fine.dcf", dictionaryWith("L", "One"));
        const QByteArray page = pageOf("fine.dcf");
        QVERIFY(!page.isEmpty());
        const QTemporaryDir room(folder.filePath("room"));
        ReadPipe pipe(room.filePath("pipe"));
        QVERIFY2(pipe.isRead(), "no pipe can be made, or there is no cat");
        QVERIFY(QFile::link("pipe", room.filePath("link")));
        const Run made = folder.run({ "codebook", "fine.dcf", "-o", room.filePath(output) });
        QVERIFY(pipe.isThere());
        QCOMPARE(QFileInfo(room.filePath("link")).symLinkTarget(), room.filePath("pipe"));
        QCOMPARE(made.status, fine);
        QCOMPARE(made.err, QByteArray());
        QVERIFY(pipe.taken(patience) == page);
    }

    // Behind what stands in the file that it leads to.
    void descriptorIsWrittenToAndItsFileStays_data()
    {
        QTest::addColumn<QString>("call");
        QTest::newRow("standard output") << "\"$0\" codebook fine.dcf -o - >> all.html";
        QTest::newRow("its device") << "\"$0\" codebook fine.dcf -o /dev/stdout >> all.html";
        QTest::newRow("its descriptor") << "\"$0\" codebook fine.dcf -o /dev/fd/1 >> all.html";
        QTest::newRow("its place in the process") << "\"$0\" codebook fine.dcf -o /proc/self/fd/1 >> all.html";
        QTest::newRow("link to it") << "ln -sf /dev/stdout out.html; \"$0\" codebook fine.dcf -o out.html >> all.html";
        QTest::newRow("another descriptor") << "\"$0\" codebook fine.dcf -o /dev/fd/3 3>> all.html";
    }
    void descriptorIsWrittenToAndItsFileStays()
    {
        QVERIFY2(QFile::exists(QStringLiteral("/proc/self/fd")), "this system has no /proc");
        QFETCH(QString, call);
        folder.write("fine.dcf", dictionaryWith("L", "One"));
        const QByteArray page = pageOf("fine.dcf");
        QVERIFY(!page.isEmpty());
        folder.write("all.html", "HEADER\n");
        const Run made = runShell(folder, call);
        QFile::remove(folder.filePath("out.html"));
        QCOMPARE(made.status, fine);
        QCOMPARE(made.err, QByteArray());
        QCOMPARE(made.out, QByteArray());
        QVERIFY(folder.read("all.html") == "HEADER\n" + page);
    }

    void descriptorThatCannotBeWrittenToIsStatus2AndOneLine_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QByteArray>("problem");
        QTest::newRow("not open") << "\"$0\" codebook fine.dcf -o /dev/fd/9"
                                  << QByteArray("/dev/fd/9: cannot be written: ");
        QTest::newRow("open to be read") << "\"$0\" codebook fine.dcf -o /dev/stdin < all.html"
                                         << QByteArray("/dev/stdin: cannot be written: ");
        QTest::newRow("of the file to read") << "\"$0\" codebook fine.dcf -o /dev/fd/3 3>> fine.dcf"
                                             << QByteArray("/dev/fd/3: is the file to read, and is not written over\n");
        QTest::newRow("of another name of the file to read")
            << "\"$0\" codebook fine.dcf -o /dev/fd/3 3>> hard"
            << QByteArray("/dev/fd/3: is the file to read, and is not written over\n");
        QTest::newRow("standard output, which is the file to read")
            << "\"$0\" codebook fine.dcf -o - >> fine.dcf"
            << QByteArray("fine.dcf: is standard output as well, and is not written over\n");
        QTest::newRow("standard output, which is another name of it")
            << "\"$0\" codebook fine.dcf -o /dev/stdout >> hard"
            << QByteArray("fine.dcf: is standard output as well, and is not written over\n");
        QTest::newRow("of another process")
            << "exec 3>> all.html; ln -sf /proc/$$/fd/3 out.html; \"$0\" codebook fine.dcf -o out.html; exit $?"
            << QByteArray("out.html: is open in another process, and is not written to\n");
    }
    void descriptorThatCannotBeWrittenToIsStatus2AndOneLine()
    {
        QVERIFY2(QFile::exists(QStringLiteral("/proc/self/fd")), "this system has no /proc");
        QFETCH(QString, call);
        QFETCH(QByteArray, problem);
        folder.write("fine.dcf", dictionaryWith("L", "One"));
        folder.write("all.html", "HEADER\n");
        giveAnotherName("fine.dcf", "hard");
        const Run made = runShell(folder, call);
        QFile::remove(folder.filePath("out.html"));
        verifyComplaint(made, problem);
        QCOMPARE(folder.read("all.html"), QByteArray("HEADER\n"));
        QCOMPARE(folder.read("fine.dcf"), dictionaryWith("L", "One"));
    }

    void linksWithoutAnEndAreNotReplaced()
    {
        folder.write("fine.dcf", dictionaryWith("L", "One"));
        const QTemporaryDir room(folder.filePath("room"));
        QVERIFY(QFile::link("second", room.filePath("first")));
        QVERIFY(QFile::link("first", room.filePath("second")));
        const QString output = room.filePath("first");
        verifyComplaint(folder.run({ "codebook", "fine.dcf", "-o", output }),
                        QFile::encodeName(output) + ": cannot be written: ");
        QCOMPARE(QFileInfo(output).symLinkTarget(), room.filePath("second"));
        QCOMPARE(QFileInfo(room.filePath("second")).symLinkTarget(), output);
    }

    // The system lets the tool write less than the page.
    void fullDiskLeavesWhatStoodThere_data() { addWhatStandsThere(); }
    void fullDiskLeavesWhatStoodThere()
    {
        QFETCH(bool, isThere);
        folder.write("fine.dcf", dictionaryWith("L", "One"));
        QFile::remove(folder.filePath("page.html"));
        if (isThere)
            folder.write("page.html", "old");
        const QStringList before = QDir(folder.path()).entryList();
        const Run made = runShell(folder, "trap '' XFSZ && ulimit -f 8 && exec \"$0\" codebook fine.dcf -o page.html");
        verifyComplaint(made, "page.html: cannot be written: ");
        QCOMPARE(QDir(folder.path()).entryList(), before);
        QCOMPARE(folder.read("page.html"), QByteArray(isThere ? "old" : ""));
    }

    void fullStandardOutputIsStatus2AndOneLine()
    {
        folder.write("fine.dcf", dictionaryWith("L", "One"));
        verifyFullDiskIsTold(folder, { "codebook", "fine.dcf", "-o", "-" });
    }

    void folderWithoutPermissionIsStatus2AndOneLine()
    {
        folder.write("fine.dcf", dictionaryWith("L", "One"));
        QDir(folder.path()).mkdir("locked");
        const QByteArray locked = QFile::encodeName(folder.filePath("locked"));
        QCOMPARE(chmod(locked.constData(), 0500), 0);
        Run made;
        asOrdinaryUser([&] { made = folder.run({ "codebook", "fine.dcf", "-o", "locked/page.html" }); });
        verifyComplaint(made, "locked/page.html: cannot be written: ");
    }

    void manyVariablesStaySmall()
    {
        constexpr int variables = 10000;
        constexpr int labels = 10;
        constexpr int largest = 15 << 20;
        QString text = dictionaryTextWith("L", "One");
        for (int i = 0; i < variables; ++i) {
            text += QStringLiteral("\n[Item]\nLabel=Question %1 of the survey\nName=V%1\nStart=%2\nLen=2\n"
                                   "DataType=Numeric\n\n[ValueSet]\nLabel=S\nName=S\n")
                        .arg(i)
                        .arg(3 + 2 * i);
            for (int code = 1; code <= labels; ++code)
                text += QStringLiteral("Value=%1;Answer %1 to question %2\n").arg(code).arg(i);
        }
        folder.write("many.dcf", text.toUtf8());
        const QByteArray page = pageOf("many.dcf");
        QVERIFY(page.size() < largest);
        QVERIFY(page.contains("<li><b>10,001</b> variables</li>"));
        const QJsonObject data = dataOf(page);
        QCOMPARE(data["variables"].toArray().size(), variables + 1);
        QCOMPARE(labelsOf(data, data["variables"].toArray().at(variables).toObject()).size(), labels);
    }

    void corpusGivesAPageForEachLayout()
    {
        if (!QFile::exists(QStringLiteral(VAN_CORPUS)))
            QSKIP("the corpus of real files is not here");
        int pages = 0;
        for (const char *kind : { "cspro-text", "cspro-json", "spss", "stata" }) {
            for (const QString &file : corpusFiles(kind).mid(0, 12)) {
                const Run shown = folder.run({ "fields", "--format", "json", file });
                const Run made = folder.run({ "codebook", file, "-o", "-" });
                QCOMPARE(made.status, shown.status);
                if (made.status != fine)
                    continue;
                const QJsonArray fields = shown.json()["fields"].toArray();
                QVERIFY2(!fields.isEmpty(), qPrintable(file));
                QCOMPARE(dataOf(made.out)["variables"].toArray().size(), fields.size());
                QVERIFY2(isHarmless(dataTextOf(made.out)), qPrintable(file));
                ++pages;
            }
        }
        QVERIFY(pages > 0);
    }

    void helpTellsOfTheCommand() { verifyHelpTellsOf("codebook", { "--type", "--decimals", "--output", "FILE" }); }

private:
    // A second name of the same file.
    void giveAnotherName(const QString &name, const QString &other) const
    {
        QFile::remove(folder.filePath(other));
        QCOMPARE(link(QFile::encodeName(folder.filePath(name)).constData(),
                      QFile::encodeName(folder.filePath(other)).constData()),
                 0);
    }

    static void addWhatStandsThere()
    {
        QTest::addColumn<bool>("isThere");
        QTest::newRow("file") << true;
        QTest::newRow("file to come") << false;
    }

    // Nothing that ends a script, and nothing that HTML forbids or UTF-8 cannot hold.
    static bool isHarmless(const QByteArray &data)
    {
        const QString text = QString::fromUtf8(data);
        return !text.contains(
                   QRegularExpression("[<>&\\x{0}-\\x{1F}\\x{7F}-\\x{9F}\\x{2028}\\x{2029}\\x{FFFE}\\x{FFFF}]"))
            && text.toUtf8() == data;
    }

    // The page that the tool writes, or nothing.
    QByteArray pageOf(const QString &file) const
    {
        QFile::remove(folder.filePath("page.html"));
        const Run made = folder.run({ "codebook", file, "-o", "page.html" });
        if (made.status != fine || !made.out.isEmpty() || !made.err.isEmpty())
            return {};
        return folder.read("page.html");
    }

    ToolFolder folder;
};

QTEST_GUILESS_MAIN(VanlayoutCodebookTest)
#include "VanlayoutCodebookTest.moc"
