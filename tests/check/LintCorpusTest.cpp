#include "check/LintedText.h"
#include "support/Corpus.h"
#include "write/Ddi.h"

#include <QtTest>

#include <algorithm>

using namespace linted;

/// Checks the real files, if they are available.
class LintCorpusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (corpusFiles("cspro-text").isEmpty())
            QSKIP("the corpus is not available");
    }

    void publishedExamplesHaveNoErrors_data() { addFiles({ "cspro-text", "cspro-json" }, "cspro-ex-"); }
    void publishedExamplesHaveNoErrors()
    {
        const QVector<LintFinding> findings = findingsOfFile();
        for (const LintFinding &finding : findings)
            QVERIFY2(finding.severity() != Severity::Error, qPrintable(shown(finding)));
    }

    void documentsOfPublishedExamplesHaveNoErrors_data() { publishedExamplesHaveNoErrors_data(); }
    void documentsOfPublishedExamplesHaveNoErrors()
    {
        QFETCH(QString, path);
        QBuffer document;
        document.open(QIODevice::WriteOnly);
        QVERIFY(writeDdi(readLayout(path), document));
        const QVector<LintFinding> findings = findingsOf(document.data());
        for (const LintFinding &finding : findings)
            QVERIFY2(finding.severity() != Severity::Error, qPrintable(shown(finding)));
    }

    void findingsOfDictionariesHaveAPathWithinTheLayout_data() { addFiles({ "cspro-text" }, QString()); }
    void findingsOfDictionariesHaveAPathWithinTheLayout()
    {
        const QVector<LintFinding> findings = findingsOfFile();
        for (const LintFinding &finding : findings) {
            QVERIFY2(finding.line > 0, qPrintable(shown(finding)));
            QVERIFY(!finding.message.isEmpty() && !finding.message.contains('\n'));
        }
    }

    void statisticalFilesAreChecked_data() { addFiles({ "spss", "stata" }, QString()); }
    void statisticalFilesAreChecked()
    {
        const QVector<LintFinding> findings = findingsOfFile();
        for (const LintFinding &finding : findings)
            QVERIFY2(finding.severity() != Severity::Error, qPrintable(shown(finding)));
    }

private:
    static void addFiles(const QStringList &kinds, const QString &begin)
    {
        QTest::addColumn<QString>("path");
        for (const QString &kind : kinds) {
            for (const QString &path : corpusFiles(kind)) {
                if (QFileInfo(path).fileName().startsWith(begin))
                    QTest::newRow(qPrintable(QFileInfo(path).fileName())) << path;
            }
        }
    }
    static QVector<LintFinding> findingsOfFile()
    {
        QFETCH(QString, path);
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? findingsOf(file.readAll()) : QVector<LintFinding>();
    }
};

QTEST_APPLESS_MAIN(LintCorpusTest)
#include "LintCorpusTest.moc"
