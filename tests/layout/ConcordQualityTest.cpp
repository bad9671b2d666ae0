#include "layout/concord/DerivedRounds.h"
#include "layout/concord/MadeSurvey.h"
#include "read/Reader.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

using namespace vanlayout;

namespace
{

QString inWords(const truth::Quality &quality)
{
    return QStringLiteral("precision %1, recall %2, %3 pairs")
        .arg(quality.precision())
        .arg(quality.recall())
        .arg(quality.known);
}

truth::Quality qualityOf(const derived::Changes &changes, QString *problems = nullptr)
{
    truth::Quality all;
    for (unsigned seed = 1; seed <= 5; ++seed) {
        const derived::Rounds rounds
            = derived::derive(made::householdSurvey(), made::furtherSurvey(), 5, changes, seed);
        QStringList wrong;
        QStringList missing;
        all.add(truth::compare(truth::tableOf(concord(rounds.layouts)), rounds.truth, &wrong, &missing));
        if (problems)
            *problems
                += wrong.join(QLatin1Char('\n')) + QStringLiteral("\nmissing:\n") + missing.join(QLatin1Char('\n'));
    }
    return all;
}

} // namespace

class ConcordQualityTest : public QObject
{
    Q_OBJECT

private slots:
    void derivedRoundsAreMatched_data()
    {
        QTest::addColumn<int>("changes");
        QTest::addColumn<double>("precision");
        QTest::addColumn<double>("recall");
        QTest::newRow("mild") << 0 << 0.99 << 0.99;
        QTest::newRow("usual") << 1 << 0.98 << 0.97;
        QTest::newRow("harsh") << 2 << 0.98 << 0.95;
        QTest::newRow("extreme") << 3 << 0.95 << 0.92;
    }
    void derivedRoundsAreMatched()
    {
        QFETCH(int, changes);
        QFETCH(double, precision);
        QFETCH(double, recall);
        const derived::Changes kinds[] = { derived::mild(), derived::usual(), derived::harsh(), derived::extreme() };
        QString problems;
        const truth::Quality quality = qualityOf(kinds[changes], &problems);
        QVERIFY(quality.known > 1000);
        const QString words = inWords(quality) + QLatin1Char('\n') + problems;
        QVERIFY2(quality.precision() >= precision, qPrintable(words));
        QVERIFY2(quality.recall() >= recall, qPrintable(words));
    }

    void roundsOfOtherFormsAreMatched_data()
    {
        QTest::addColumn<int>("form");
        QTest::addColumn<double>("precision");
        QTest::addColumn<double>("recall");
        QTest::newRow("statistical files") << 0 << 0.97 << 0.94;
        QTest::newRow("without values") << 1 << 0.97 << 0.94;
        QTest::newRow("without labels") << 2 << 0.9 << 0.8;
    }
    void roundsOfOtherFormsAreMatched()
    {
        QFETCH(int, form);
        QFETCH(double, precision);
        QFETCH(double, recall);
        const derived::Rounds rounds = derived::derive(made::householdSurvey(), made::furtherSurvey(), 5,
                                                       form == 2 ? derived::mild() : derived::usual(), 11);
        const derived::Rounds changed = form == 0 ? derived::asStatistical(rounds)
            : form == 1                           ? derived::withoutValues(rounds)
                                                  : derived::withoutLabels(rounds);
        const truth::Quality quality = truth::compare(truth::tableOf(concord(changed.layouts)), changed.truth);
        QVERIFY2(quality.precision() >= precision, qPrintable(inWords(quality)));
        QVERIFY2(quality.recall() >= recall, qPrintable(inWords(quality)));
    }

    void theMatchingIsBetterThanRulesOfNames()
    {
        const derived::Rounds rounds
            = derived::derive(made::householdSurvey(), made::furtherSurvey(), 5, derived::usual(), 7);
        const truth::Quality quality = truth::compare(truth::tableOf(concord(rounds.layouts)), rounds.truth);
        const truth::Quality byName = truth::compare(truth::byName(rounds.layouts), rounds.truth);
        const truth::Quality byLabel = truth::compare(truth::byNameThenLabel(rounds.layouts), rounds.truth);
        QVERIFY2(byName.recall() < 0.8, qPrintable(inWords(byName)));
        QVERIFY2(quality.recall() > byLabel.recall(), qPrintable(inWords(byLabel)));
        QVERIFY2(quality.precision() > byName.precision(), qPrintable(inWords(quality)));
    }

    // Real files are in the collection of the corpus, which can be absent.
    void markedSurveysAreMatched_data()
    {
        QTest::addColumn<QString>("table");
        QTest::newRow("none") << QString();
        const QFileInfoList tables
            = QDir(QStringLiteral(VAN_TEST_DATA "/concord")).entryInfoList({ QStringLiteral("*.csv") });
        for (const QFileInfo &table : tables) {
            if (QFileInfo::exists(QStringLiteral(VAN_CORPUS)))
                QTest::newRow(qPrintable(table.completeBaseName())) << table.filePath();
        }
    }
    void markedSurveysAreMatched()
    {
        QFETCH(QString, table);
        if (table.isEmpty())
            return;
        const truth::Truth truth = truth::Truth::read(table);
        QVERIFY(truth.files.size() >= 2);
        QVector<Layout> rounds;
        for (const QString &file : truth.files)
            rounds.append(readLayout(QStringLiteral(VAN_CORPUS "/") + file));
        QStringList wrong;
        QStringList missing;
        const truth::Quality quality = truth::compare(truth::tableOf(concord(rounds)), truth, &wrong, &missing);
        const int most = 2 + quality.known / 20;
        QVERIFY2(wrong.size() <= most, qPrintable(wrong.join(QLatin1Char('\n'))));
        QVERIFY2(missing.size() <= most + 4, qPrintable(missing.join(QLatin1Char('\n'))));
    }

    void surveysWithoutCommonQuestionsHaveFewCommonVariables()
    {
        const truth::Table table = truth::tableOf(concord({ made::householdSurvey(), made::furtherSurvey() }));
        QCOMPARE(truth::compare(table, truth::Truth()).found, 1); // the identifier
    }
};

QTEST_APPLESS_MAIN(ConcordQualityTest)

#include "ConcordQualityTest.moc"
