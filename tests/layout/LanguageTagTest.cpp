#include "write/LanguageTag_p.h"

#include <QTest>

using namespace vanlayout;

class LanguageTagTest : public QObject
{
    Q_OBJECT

private slots:
    void languagesAreTagsOfBcp47_data();
    void languagesAreTagsOfBcp47();
};

void LanguageTagTest::languagesAreTagsOfBcp47_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("tag");
    // clang-format off
    QTest::newRow("two letters")            << "EN"         << "en";
    QTest::newRow("ISO 639-2, terminology") << "FRA"      << "fr";
    QTest::newRow("ISO 639-2, bibliographic") << "fre"    << "fr";
    QTest::newRow("three letters with a region") << "POR-BR" << "pt-br";
    QTest::newRow("country, no language")   << "JP"         << "";
    QTest::newRow("three letters")          << "Fil"        << "fil";
    QTest::newRow("region")                 << "pt-br"      << "pt-br";
    QTest::newRow("underscore")             << "PT_BR"      << "pt-br";
    QTest::newRow("region of digits")       << "ES-419"     << "es-419";
    QTest::newRow("script")                 << "SR-LATN-rs" << "sr-latn-rs";
    QTest::newRow("variant")                << "de-CH-1901" << "de-ch-1901";
    QTest::newRow("private use")            << "en-X-Short" << "en-x-short";
    QTest::newRow("one letter")             << "E"          << "";
    QTest::newRow("four letters")           << "ENGL"       << "";
    QTest::newRow("word")                   << "English"    << "";
    QTest::newRow("digits")                 << "L1"         << "";
    QTest::newRow("blank within")           << "E N"        << "";
    QTest::newRow("blank after")            << "EN "        << "en";
    QTest::newRow("line feed after")        << "EN\n"       << "en";
    QTest::newRow("letter of another kind") << "\u00c9N"    << "";
    QTest::newRow("empty subtag")           << "en--GB"     << "";
    QTest::newRow("nothing")                << ""           << "";
    // clang-format on
}

void LanguageTagTest::languagesAreTagsOfBcp47()
{
    QFETCH(QString, code);
    QTEST(languageTagOf(code), "tag");
}

QTEST_APPLESS_MAIN(LanguageTagTest)
#include "LanguageTagTest.moc"
