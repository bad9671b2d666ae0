#include "check/LintSarif.h"
#include "check/LintedText.h"

#include <QtTest>

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace linted;

namespace
{

LintedFile lintedFile(const QString &name = "survey.dcf")
{
    LintedFile file;
    file.file = name;
    file.format = Format::CSProText;
    file.findings = { { LintRule::Overlap, "L/R/\u00c2GE", 12, "A overlaps \"B\"" },
                      { LintRule::Gap, QString(), 0, "no item has column 4" },
                      { LintRule::MissingLabel, "L", 3, "the level has no label\x1b" } };
    return file;
}

LintedFile unreadFile()
{
    LintedFile file;
    file.file = "no.dcf";
    file.problem = "cannot be opened";
    return file;
}

template <typename Write> QByteArray written(Write write)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    write(buffer);
    return bytes;
}

QJsonObject sarif(const QVector<LintedFile> &files)
{
    return QJsonDocument::fromJson(written([&](QIODevice &device) { writeLintSarif(files, device); })).object();
}

QJsonObject runOf(const QJsonObject &document)
{
    return document["runs"].toArray().at(0).toObject();
}

} // namespace

/// Tests the JSON form and the SARIF form of findings.
class LintFormsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void jsonIsOneObjectOnOneLine()
    {
        const QByteArray bytes = written([](QIODevice &device) { writeLintJson(lintedFile(), device); });
        QCOMPARE(
            bytes,
            QByteArray("{\"file\":\"survey.dcf\",\"format\":\"cspro-text\",\"errors\":1,\"warnings\":1,\"infos\":1,"
                       "\"findings\":[{\"rule\":\"overlap\",\"severity\":\"error\",\"line\":12,"
                       "\"path\":\"L/R/\xC3\x82GE\",\"message\":\"A overlaps \\\"B\\\"\"},{\"rule\":\"gap\","
                       "\"severity\":\"info\",\"message\":\"no item has column 4\"},{\"rule\":\"missing-label\","
                       "\"severity\":\"warning\",\"line\":3,\"path\":\"L\","
                       "\"message\":\"the level has no label\\u001B\"}]}\n"));
    }

    void jsonOfAFileThatIsNotReadHasTheProblem()
    {
        const QByteArray bytes = written([](QIODevice &device) { writeLintJson(unreadFile(), device); });
        QCOMPARE(bytes, QByteArray("{\"file\":\"no.dcf\",\"problem\":\"cannot be opened\"}\n"));
    }

    void sarifHasTheRequiredMembers()
    {
        const QJsonObject document = sarif({ lintedFile(), unreadFile() });
        QCOMPARE(document["version"].toString(), QString("2.1.0"));
        QVERIFY(document["$schema"].toString().endsWith("/sarif-schema-2.1.0.json"));
        const QJsonObject driver = runOf(document)["tool"].toObject()["driver"].toObject();
        QCOMPARE(driver["name"].toString(), QString("vanlayout"));
        QVERIFY(!driver["version"].toString().isEmpty());
        const QJsonArray rules = driver["rules"].toArray();
        QCOMPARE(rules.size(), lintRuleCount);
        for (int index = 0; index < rules.size(); ++index) {
            const QJsonObject rule = rules.at(index).toObject();
            QCOMPARE(rule["id"].toString(), lintRules().at(index).id);
            QCOMPARE(rule["shortDescription"].toObject()["text"].toString(), lintRules().at(index).title);
            QCOMPARE(rule["fullDescription"].toObject()["text"].toString(), lintRules().at(index).meaning);
            QVERIFY(QStringList({ "error", "warning", "note" })
                        .contains(rule["defaultConfiguration"].toObject()["level"].toString()));
        }
    }

    void sarifHasTheStructureOfTheStandard()
    {
        const QJsonObject document = sarif({ lintedFile("a b.dcf"), unreadFile() });
        QCOMPARE(document.keys(), QStringList({ "$schema", "runs", "version" }));
        QCOMPARE(document["runs"].toArray().size(), 1);
        const QJsonObject run = runOf(document);
        QCOMPARE(run.keys(), QStringList({ "columnKind", "invocations", "results", "tool" }));
        QCOMPARE(run["columnKind"].toString(), QString("utf16CodeUnits"));
        const QJsonObject driver = run["tool"].toObject()["driver"].toObject();
        QCOMPARE(driver.keys(), QStringList({ "name", "rules", "version" }));
        const QJsonArray rules = driver["rules"].toArray();
        for (const QJsonValue &rule : rules)
            verifyRule(rule.toObject());
        const QJsonArray results = run["results"].toArray();
        for (const QJsonValue &result : results)
            verifyResult(result.toObject(), rules);
        const QJsonArray invocations = run["invocations"].toArray();
        for (const QJsonValue &invocation : invocations)
            verifyNotifications(invocation.toObject());
    }

    void sarifResultNamesRuleLevelMessageAndPlace()
    {
        const QJsonArray results = runOf(sarif({ lintedFile() }))["results"].toArray();
        QCOMPARE(results.size(), 3);
        const QJsonObject first = results.at(0).toObject();
        QCOMPARE(first["ruleId"].toString(), QString("overlap"));
        QCOMPARE(lintRules().at(first["ruleIndex"].toInt()).id, QString("overlap"));
        QCOMPARE(first["level"].toString(), QString("error"));
        QCOMPARE(first["message"].toObject()["text"].toString(), QString("A overlaps \"B\""));
        const QJsonObject place = first["locations"].toArray().at(0).toObject();
        const QJsonObject physical = place["physicalLocation"].toObject();
        QCOMPARE(physical["artifactLocation"].toObject()["uri"].toString(), QString("survey.dcf"));
        QCOMPARE(physical["region"].toObject()["startLine"].toInt(), 12);
        QCOMPARE(place["logicalLocations"].toArray().at(0).toObject()["fullyQualifiedName"].toString(),
                 QString::fromUtf8("L/R/ÂGE"));
        QCOMPARE(results.at(1).toObject()["level"].toString(), QString("note"));
        const QJsonObject second = results.at(1).toObject()["locations"].toArray().at(0).toObject();
        QVERIFY(!second["physicalLocation"].toObject().contains("region")); // the line is not known
        QVERIFY(!second.contains("logicalLocations"));
    }

    void sarifUriIsThePathEncoded_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("uri");
        QTest::newRow("relative") << "a/b.dcf"
                                  << "a/b.dcf";
        QTest::newRow("absolute") << "/a/b.dcf"
                                  << "file:///a/b.dcf";
        QTest::newRow("blank and percent") << "a b%.dcf"
                                           << "a%20b%25.dcf";
        QTest::newRow("letters") << QString::fromUtf8("é:.dcf") << "%C3%A9%3A.dcf";
    }
    void sarifUriIsThePathEncoded()
    {
        QFETCH(QString, path);
        const QJsonObject result = runOf(sarif({ lintedFile(path) }))["results"].toArray().at(0).toObject();
        const QJsonObject place = result["locations"].toArray().at(0).toObject()["physicalLocation"].toObject();
        QTEST(place["artifactLocation"].toObject()["uri"].toString(), "uri");
    }

    void sarifReportsAFileThatIsNotRead()
    {
        const QJsonObject fine = runOf(sarif({ lintedFile() }))["invocations"].toArray().at(0).toObject();
        QCOMPARE(fine["executionSuccessful"].toBool(), true);
        const QJsonObject failed = runOf(sarif({ unreadFile() }))["invocations"].toArray().at(0).toObject();
        QCOMPARE(failed["executionSuccessful"].toBool(true), false);
        const QJsonObject notice = failed["toolExecutionNotifications"].toArray().at(0).toObject();
        QCOMPARE(notice["message"].toObject()["text"].toString(), QString("cannot be opened"));
        QVERIFY(runOf(sarif({ unreadFile() }))["results"].toArray().isEmpty());
    }

private:
    static bool isText(const QJsonValue &value) { return value.isString() && !value.toString().isEmpty(); }

    static bool isLevel(const QJsonValue &value)
    {
        return QStringList({ "error", "warning", "note" }).contains(value.toString());
    }

    static void verifyRule(const QJsonObject &rule)
    {
        QCOMPARE(rule.keys(),
                 QStringList({ "defaultConfiguration", "fullDescription", "help", "id", "shortDescription" }));
        QVERIFY(isText(rule["id"]) && isLevel(rule["defaultConfiguration"].toObject()["level"]));
        for (const char *key : { "shortDescription", "fullDescription", "help" })
            QVERIFY2(isText(rule[QLatin1String(key)].toObject()["text"]), key);
        QVERIFY(isText(rule["help"].toObject()["markdown"]));
        QVERIFY(rule["help"].toObject()["text"].toString().contains("docs/lint.md"));
    }

    static void verifyResult(const QJsonObject &result, const QJsonArray &rules)
    {
        QCOMPARE(result.keys(), QStringList({ "level", "locations", "message", "ruleId", "ruleIndex" }));
        QVERIFY(result["ruleIndex"].isDouble() && isLevel(result["level"]));
        QCOMPARE(rules.at(result["ruleIndex"].toInt(-1)).toObject()["id"].toString(), result["ruleId"].toString());
        QCOMPARE(result["message"].toObject().keys(), QStringList("text"));
        QVERIFY(isText(result["message"].toObject()["text"]));
        verifyLocations(result["locations"].toArray());
    }

    static void verifyNotifications(const QJsonObject &invocation)
    {
        QVERIFY(invocation["executionSuccessful"].isBool()); // the only required member
        const QJsonArray notifications = invocation["toolExecutionNotifications"].toArray();
        QCOMPARE(notifications.size(), 1);
        const QJsonObject notification = notifications.at(0).toObject();
        QVERIFY(isLevel(notification["level"]) && isText(notification["message"].toObject()["text"]));
        verifyLocations(notification["locations"].toArray());
    }

    static void verifyLocations(const QJsonArray &locations)
    {
        QCOMPARE(locations.size(), 1);
        const QJsonObject physical = locations.at(0).toObject()["physicalLocation"].toObject();
        const QString uri = physical["artifactLocation"].toObject()["uri"].toString();
        QVERIFY2(QRegularExpression("^([A-Za-z0-9._~/-]|%[0-9A-F]{2})+$").match(uri).hasMatch(), qPrintable(uri));
        if (physical.contains("region"))
            QVERIFY(physical["region"].toObject()["startLine"].toInt() >= 1);
    }
};

QTEST_APPLESS_MAIN(LintFormsTest)
#include "LintFormsTest.moc"
