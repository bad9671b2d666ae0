#include "read/Reader.h"
#include "write/LayoutJson.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

using namespace vanlayout;

namespace
{

const QDir directory(QStringLiteral(VAN_TEST_DATA "/layout"));

Layout layoutOf(const QString &name)
{
    Layout layout = readLayout(directory.filePath(name));
    layout.file = name;
    return layout;
}

QByteArray jsonOf(const Layout &layout)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    writeLayoutJson(layout, buffer, JsonStyle::Pretty);
    return buffer.data();
}

QByteArray numbered(int index, const QByteArrayList &lines)
{
    return QByteArray::number(index + 1) + ": " + lines.at(index);
}

} // namespace

/// Compares the layout of each dictionary and DDI document in tests/data/layout with the file of the same name and the
/// suffix `.json`. The target `update-golden` rewrites these files; the differences must be reviewed.
class GoldenExactLayoutsTest : public QObject
{
    Q_OBJECT

private slots:
    void layoutIsTheExpectedOne_data();
    void layoutIsTheExpectedOne();
    void everyExpectedLayoutHasItsDictionary();
};

void GoldenExactLayoutsTest::layoutIsTheExpectedOne_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : directory.entryList({ "*.dcf", "*.xml" }))
        QTest::newRow(qPrintable(name)) << name;
}

void GoldenExactLayoutsTest::layoutIsTheExpectedOne()
{
    QFETCH(QString, name);
    QFile expected(directory.filePath(QFileInfo(name).completeBaseName() + ".json"));
    QVERIFY2(expected.open(QIODevice::ReadOnly), qPrintable(expected.fileName()));
    const QByteArrayList expectedLines = expected.readAll().split('\n');
    const QByteArrayList lines = jsonOf(layoutOf(name)).split('\n');
    for (int index = 0; index < qMin(lines.size(), expectedLines.size()); ++index)
        QCOMPARE(numbered(index, lines), numbered(index, expectedLines));
    QCOMPARE(lines.size(), expectedLines.size());
}

void GoldenExactLayoutsTest::everyExpectedLayoutHasItsDictionary()
{
    const QStringList expected = directory.entryList({ "*.json" });
    QVERIFY(expected.size() >= 20);
    for (const QString &name : expected)
        QVERIFY2(directory.exists(QFileInfo(name).completeBaseName() + ".dcf")
                     || directory.exists(QFileInfo(name).completeBaseName() + ".xml"),
                 qPrintable(name));
}

QTEST_APPLESS_MAIN(GoldenExactLayoutsTest)
#include "GoldenExactLayoutsTest.moc"
