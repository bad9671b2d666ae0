#include "formats/MakeImporter.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

Q_DECLARE_METATYPE(ImportFormat)

class MakeImporterTest : public QObject
{
    Q_OBJECT

private slots:
    void formatGoesByTheFirstBytes_data();
    void formatGoesByTheFirstBytes();
    void importerIsThatOfTheContent_data();
    void importerIsThatOfTheContent();
    void fileThatCannotBeOpenedGetsTheImporterOfTextDictionaries();
};

void MakeImporterTest::formatGoesByTheFirstBytes_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<ImportFormat>("format");
    QTest::newRow("brace") << QByteArray("{ \"software\":") << ImportFormat::CSPro8;
    QTest::newRow("brace after white space") << QByteArray(" \t\r\n{") << ImportFormat::CSPro8;
    QTest::newRow("$FL2") << QByteArray("$FL2@(#) SPSS") << ImportFormat::Spss;
    QTest::newRow("$FL3") << QByteArray("$FL3@(#) SPSS") << ImportFormat::Spss;
    QTest::newRow("tag") << QByteArray("<stata_dta><head") << ImportFormat::Stata;
    QTest::newRow("first version byte") << QByteArray("\x68\x02") << ImportFormat::Stata;
    QTest::newRow("last version byte") << QByteArray("\x73\x01") << ImportFormat::Stata;
    QTest::newRow("version below") << QByteArray("\x67\x02") << ImportFormat::CSPro;
    QTest::newRow("version above") << QByteArray("\x74\x01") << ImportFormat::CSPro;
    QTest::newRow("no byte order") << QByteArray("\x72\x03") << ImportFormat::CSPro;
    QTest::newRow("version only") << QByteArray("\x72") << ImportFormat::CSPro;
    QTest::newRow("bracket") << QByteArray("[Dictionary]") << ImportFormat::CSPro;
    QTest::newRow("empty") << QByteArray() << ImportFormat::CSPro;
}

void MakeImporterTest::formatGoesByTheFirstBytes()
{
    QFETCH(QByteArray, head);
    QFETCH(ImportFormat, format);
    QVERIFY(importFormatOf(head) == format);
}

void MakeImporterTest::importerIsThatOfTheContent_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("type");
    const auto made = [](const char *pattern) {
        const QDir directory(VAN_MADE_DATA);
        return directory.filePath(directory.entryList({ pattern }, QDir::Files).value(0));
    };
    QTest::newRow("text") << VAN_EXAMPLES "/census.dcf"
                          << "CSPRO";
    QTest::newRow("JSON") << VAN_EXAMPLES "/census8.dcf"
                          << "CSPRO8";
    QTest::newRow("SPSS") << made("*.sav") << "SPSS";
    QTest::newRow("Stata") << made("*.dta") << "STATA";
}

void MakeImporterTest::importerIsThatOfTheContent()
{
    QFETCH(QString, source);
    const QTemporaryDir directory;
    const QString path = directory.filePath("name.without.meaning");
    QVERIFY(QFile::copy(source, path));
    const std::unique_ptr<TDataImport> importer = makeImporter(path);
    QTEST(importer->getDataProviderType(), "type");
    const std::unique_ptr<QStringList> names(importer->selectLayoutSource());
    QVERIFY(!names->isEmpty());
    importer->releaseContents();
}

void MakeImporterTest::fileThatCannotBeOpenedGetsTheImporterOfTextDictionaries()
{
    const QTemporaryDir directory;
    const std::unique_ptr<TDataImport> importer = makeImporter(directory.filePath("absent.sav"));
    QCOMPARE(importer->getDataProviderType(), QString("CSPRO"));
    const std::unique_ptr<QStringList> names(importer->selectLayoutSource());
    QVERIFY(names->isEmpty());
    importer->releaseContents();
}

QTEST_GUILESS_MAIN(MakeImporterTest)
#include "MakeImporterTest.moc"
