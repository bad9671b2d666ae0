#include "RandomDictionary.h"
#include "read/Reader.h"
#include "support/Corpus.h"
#include "support/RandomLayouts.h"
#include "write/CSProJson.h"
#include "write/CSProText.h"
#include "write/LayoutJson.h"

#include <QBuffer>
#include <QFile>
#include <QtTest>

using namespace vanlayout;

namespace
{

QByteArray textOf(const Layout &layout, Losses *losses = nullptr, const CSProTextStyle &style = {})
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return writeCSProText(layout, buffer, style, losses) ? buffer.data() : QByteArray();
}

QByteArray jsonOf(const Layout &layout, Losses *losses = nullptr)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return writeCSProJson(layout, buffer, losses) ? buffer.data() : QByteArray();
}

Layout layoutOf(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return readLayout(buffer, QStringLiteral("file"));
}

// The layout without what is of the file and not of the dictionary.
Layout dictionaryOf(Layout layout)
{
    layout.file.clear();
    layout.format = Format::None;
    layout.formatVersion.clear();
    layout.readOptimization.reset();
    layout.problems.clear();
    return layout;
}

QByteArray shown(const Layout &layout)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    writeLayoutJson(layout, buffer, JsonStyle::Pretty);
    return buffer.data();
}

void compareDictionaries(const Layout &actual, const Layout &expected)
{
    if (dictionaryOf(actual) != dictionaryOf(expected))
        QCOMPARE(shown(dictionaryOf(actual)), shown(dictionaryOf(expected)));
}

} // namespace

/// Tests that dictionaries are the same after they were written and read.
class RoundTripTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void randomDictionariesComeBackFromTheTextForm()
    {
        forEachDictionary([](const Layout &layout) {
            Losses losses;
            const Layout back = layoutOf(textOf(layout, &losses));
            QCOMPARE(losses.size(), 0);
            compareDictionaries(back, layout);
        });
    }

    void randomDictionariesComeBackFromTheJsonForm()
    {
        forEachDictionary([](const Layout &layout) {
            Losses losses;
            const Layout json = layoutOf(jsonOf(layout, &losses));
            const Layout back = layoutOf(textOf(json, &losses));
            QCOMPARE(losses.size(), 0);
            compareDictionaries(back, layout);
            QCOMPARE(jsonOf(json), jsonOf(layoutOf(jsonOf(json))));
        });
    }

    // CSPro wrote these files; others are made by other programs, or have no line end at their end.
    void realTextFilesKeepTheirBytes()
    {
        const QStringList others = { "chimera-dictionary.dcf", "dhs-tj-tjhh80.dcf", "istat-household-template.dcf",
                                     "istat-household.dcf", "istat-listing.dcf" };
        forEachRealFile(QStringLiteral("cspro-text"), others, [](const Layout &layout, const QByteArray &bytes) {
            CSProTextStyle style;
            style.lineEnd = bytes.contains("\r\n") ? CSProTextStyle::LineEnd::CrLf : CSProTextStyle::LineEnd::Lf;
            return textOf(layout, nullptr, style) == bytes;
        });
    }

    void realJsonFilesKeepTheirBytes()
    {
        const QStringList others = { "dhs-cg-remeasure.dcf", "survaize-popstanhouseholdsurvey.dcf" };
        forEachRealFile(QStringLiteral("cspro-json"), others,
                        [](const Layout &layout, const QByteArray &bytes) { return jsonOf(layout) == bytes; });
    }

    void realTextFilesComeBackFromTheJsonForm()
    {
        // The first has a blank field of fewer blanks than its item has columns, the second a wrong record length.
        const QStringList others = { "chimera-dictionary.dcf", "istat-household-template.dcf" };
        forEachRealFile(QStringLiteral("cspro-text"), others, [](const Layout &layout, const QByteArray &) {
            Losses losses;
            const Layout json = layoutOf(jsonOf(layout, &losses));
            return losses.isEmpty() && dictionaryOf(layoutOf(textOf(json))) == dictionaryOf(layout);
        });
    }

    void realJsonFilesComeBackFromTheTextForm()
    {
        const QStringList others = { "cspro-testdict.dcf" }; // has an image, which the text form cannot hold
        forEachRealFile(QStringLiteral("cspro-json"), others, [](const Layout &layout, const QByteArray &) {
            Layout expected = dictionaryOf(layout);
            if (expected.security)
                expected.security = Security{ expected.security->settings, {}, {}, {} };
            Losses losses;
            const Layout text = layoutOf(textOf(layout, &losses));
            return dictionaryOf(layoutOf(jsonOf(text, &losses))) == expected && losses.isEmpty();
        });
    }

private:
    // Checks each real file of a kind but these.
    template <typename Check> static void forEachRealFile(const QString &kind, const QStringList &others, Check check)
    {
        const QStringList paths = corpusFiles(kind);
        if (paths.isEmpty())
            QSKIP("the corpus is absent");
        for (const QString &path : paths) {
            QFile file(path);
            QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(path));
            const bool isExpected = !others.contains(QFileInfo(path).fileName());
            const bool isSame = check(readLayout(path), file.readAll());
            QVERIFY2(isSame == isExpected, qPrintable(path));
        }
    }

    static void forEachDictionary(void (*check)(const Layout &layout))
    {
        const quint32 dictionaries = randomLayoutCount(5000); // for each form
        for (quint32 seed = 1; seed <= dictionaries; ++seed) {
            check(RandomDictionary(seed).make());
            if (QTest::currentTestFailed())
                QFAIL(qPrintable(QStringLiteral("seed %1").arg(seed)));
        }
    }
};

QTEST_APPLESS_MAIN(RoundTripTest)

#include "RoundTripTest.moc"
