#include "check/LintedText.h"
#include "layout/MadeLayout.h"

#include <QtTest>

using namespace linted;

namespace
{

QString sectionOf(const QString &id)
{
    const QString text = page();
    const QString heading = QLatin1String("\n### ") + id + QLatin1Char('\n');
    const int start = text.indexOf(heading);
    if (start < 0)
        return QString();
    const int end = text.indexOf(QRegularExpression(QStringLiteral("\n##+ ")), start + heading.size());
    return text.mid(start + heading.size(), end < 0 ? -1 : end - start - heading.size() + 1);
}

Layout statisticalFile(Format format, const Item &item)
{
    Record record;
    record.items = { item };
    Level level;
    level.records = { record };
    Layout layout;
    layout.format = format;
    layout.levels = { level };
    return layout;
}

Item variable()
{
    Item item = made::item("AGE", 8);
    item.labels = made::labels("Age");
    return item;
}

// The examples of statistical files, which cannot be written in the page.
Layout statisticalExample(LintRule rule)
{
    Item item = variable();
    switch (rule) {
    case LintRule::LabelOutOfRange:
        item.storage = Storage::Int8;
        item.valueSets = { made::valueSet({ made::value("999", "DK") }) };
        item.valueSets[0].name = "AGE_LABELS";
        return statisticalFile(Format::Stata, item);
    case LintRule::UnlabelledVariable:
        item.labels = Labels();
        return statisticalFile(Format::Spss, item);
    case LintRule::UnlabelledMissing:
        item.valueSets = { made::valueSet({ made::value("9", "Refused") }) };
        item.missing = { { "8", QString() }, { "9", QString() } };
        return statisticalFile(Format::Spss, item);
    default:
        break;
    }
    Layout layout = statisticalFile(Format::Stata, item);
    layout.formatVersion = "118";
    if (rule == LintRule::IncompleteReading)
        layout.problems = { { Severity::Warning, "reading-ended", 0, QString(), "reading ended after the variables" } };
    else
        layout.extras = { { rule == LintRule::MissingLabelSet ? "//AGE" : "", "valueLabels", "age_lbl", 0 } };
    return layout;
}

QByteArray contentOf(const QString &section)
{
    const QString json = blockOf(section, "json");
    if (!json.isEmpty())
        return json.toUtf8();
    QByteArray content = changed(baseDictionary(), blockOf(section, "diff")).toUtf8();
    if (content.contains("<E9>"))
        content.prepend("\xEF\xBB\xBF");
    return content.replace("<E9>", "\xE9").replace("<300 letters>", QByteArray(300, 'x'));
}

} // namespace

/// Compares the page of the rules with the table of the rules, and runs its examples.
class LintPageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tableOfThePageHasTheRulesInTheirOrder()
    {
        QString rows;
        for (const LintRuleInfo &info : lintRules())
            rows += QStringLiteral("| [`%1`](#%1) | %2 | %3 |\n").arg(info.id, wordOf(info.severity), info.meaning);
        QVERIFY(page().contains("|---|---|---|\n" + rows + "\n"));
    }

    void dictionaryOfTheExamplesHasNoFindings()
    {
        QVERIFY(baseDictionary().size() > 500);
        const QVector<LintFinding> findings = findingsOf(baseDictionary().toUtf8());
        QVERIFY2(findings.isEmpty(), findings.isEmpty() ? "" : qPrintable(shown(findings.constFirst())));
    }

    void exampleHasTheFindingThatThePageShows_data()
    {
        QTest::addColumn<int>("rule");
        for (const LintRuleInfo &info : lintRules())
            QTest::newRow(qPrintable(info.id)) << int(info.rule);
    }
    void exampleHasTheFindingThatThePageShows()
    {
        QFETCH(int, rule);
        const LintRuleInfo &info = infoOf(LintRule(rule));
        const QString section = sectionOf(info.id);
        QString severity = wordOf(info.severity);
        severity[0] = severity.at(0).toUpper();
        QVERIFY2(section.startsWith(QStringLiteral("\n*%1.* %2\n").arg(severity, info.meaning)), qPrintable(section));
        const bool isMade = !section.contains("```diff") && !section.contains("```json");
        LintOptions only;
        only.only = { info.rule };
        const QVector<LintFinding> findings
            = isMade ? lint(statisticalExample(info.rule), only) : findingsOf(contentOf(section), { info.rule });
        QVERIFY(!findings.isEmpty());
        QCOMPARE(shown(findings.constFirst()), blockOf(section, "text"));
    }

    void soundVariableHasNoFindings()
    {
        Item item = variable();
        item.storage = Storage::Int8;
        item.valueSets = { made::valueSet({ made::value("1", "One"), made::value(".a", "Refused") }) };
        item.missing = { { "1", QString() } };
        QVERIFY(lint(statisticalFile(Format::Stata, item)).isEmpty());
    }
};

QTEST_APPLESS_MAIN(LintPageTest)
#include "LintPageTest.moc"
