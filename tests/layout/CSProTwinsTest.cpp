#include "read/Reader.h"
#include "write/LayoutJson.h"

#include <QBuffer>
#include <QDir>
#include <QTest>

using namespace vanlayout;

namespace
{

const QDir directory(QStringLiteral(VAN_TEST_DATA "/layout"));
const QString suffix = QStringLiteral(".json8.dcf");

// Removes the statements of a file about itself, and those that one of the two forms cannot make.
Layout normalised(Layout layout)
{
    layout.file.clear();
    layout.format = Format::None;
    layout.formatVersion.clear();
    layout.encoding.clear();
    layout.security.reset();
    layout.readOptimization.reset();
    layout.valueSetImages.reset();
    layout.extras.clear();
    layout.problems.clear();
    for (Level &level : layout.levels)
        for (Record &record : level.records)
            record.length.reset();
    return layout;
}

QByteArrayList linesOf(const Layout &layout)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    writeLayoutJson(layout, buffer, JsonStyle::Pretty);
    return buffer.data().split('\n');
}

QByteArray numbered(int index, const QByteArrayList &lines)
{
    return QByteArray::number(index + 1) + ": " + lines.at(index);
}

} // namespace

/// Tests that each dictionary `NAME.json8.dcf` in tests/data/layout has the same layout as `NAME.dcf`, its twin in text
/// form.
class CSProTwinsTest : public QObject
{
    Q_OBJECT

private slots:
    void bothFormsGiveOneLayout_data();
    void bothFormsGiveOneLayout();
    void thereAreTwentyTwins();
};

void CSProTwinsTest::bothFormsGiveOneLayout_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : directory.entryList({ '*' + suffix }))
        QTest::newRow(qPrintable(name)) << name.chopped(suffix.size());
}

void CSProTwinsTest::bothFormsGiveOneLayout()
{
    QFETCH(QString, name);
    const Layout text = readLayout(directory.filePath(name + ".dcf"));
    const Layout json = readLayout(directory.filePath(name + suffix));
    QCOMPARE(text.format, Format::CSProText);
    QCOMPARE(json.format, Format::CSProJson);
    const QByteArrayList expected = linesOf(normalised(text));
    const QByteArrayList lines = linesOf(normalised(json));
    for (int index = 0; index < qMin(lines.size(), expected.size()); ++index)
        QCOMPARE(numbered(index, lines), numbered(index, expected));
    QVERIFY(normalised(json) == normalised(text));
}

void CSProTwinsTest::thereAreTwentyTwins()
{
    QVERIFY(directory.entryList({ '*' + suffix }).size() >= 20);
}

QTEST_APPLESS_MAIN(CSProTwinsTest)
#include "CSProTwinsTest.moc"
