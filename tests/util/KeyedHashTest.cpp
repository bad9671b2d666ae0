#include "support/CraftedKeys.h"
#include "util/KeyedHash_p.h"

#include <QProcess>
#include <QtTest>

#include <cstdio>
#include <set>

namespace
{

constexpr int count = 10000;
constexpr char hashOnly[] = "--hash";

size_t hashOfAText()
{
    return KeyedHash()(QString("a text"));
}

// No two of some thousand hashes of 64 bits should be equal.
template <typename Keys> size_t differentHashes(const Keys &keys)
{
    std::set<size_t> hashes;
    for (const auto &key : keys)
        hashes.insert(KeyedHash()(key));
    return hashes.size();
}

} // namespace

class KeyedHashTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void equalTextsHaveOneHash()
    {
        const KeyedHash hash;
        const QString whole = " abcdefghijklmnopqrstuvwxyz";
        for (int size = 0; size < whole.size(); ++size) {
            const QString text = whole.mid(1, size); // the same text in other memory
            QCOMPARE(hash(QStringView(whole).mid(1, size)), hash(text));
        }
        QCOMPARE(hash(QString()), hash(QString("")));
        QCOMPARE(hash(QByteArray()), hash(QByteArray("")));
        QCOMPARE(hash(QByteArray("abc")), hash(QByteArray("abcd").left(3)));
    }

    void equalNumbersHaveOneHash()
    {
        const KeyedHash hash;
        QCOMPARE(hash(-0.0), hash(0.0));
        QCOMPARE(hash(1.5), hash(3.0 / 2));
        QVERIFY(hash(1.5) != hash(-1.5));
    }

    void partsCountInTheirOrder()
    {
        const KeyedHash hash;
        QCOMPARE(hash({ 1, 2 }), hash({ 1, 2 }));
        QVERIFY(hash({ 1, 2 }) != hash({ 2, 1 }));
        QVERIFY(hash({ 1, 2 }) != hash({ 1, 2, 0 }));
    }

    void craftedKeysHaveHashesOfTheirOwn()
    {
        const QStringList names = crafted::names(count, true);
        QCOMPARE(std::set<QString>(names.begin(), names.end()).size(), size_t(count));
        for (const QString &name : names)
            QCOMPARE(crafted::checksum(crafted::bytesOf(name)), crafted::checksum(crafted::bytesOf(names.first())));
        QCOMPARE(differentHashes(names), size_t(count));
        QCOMPARE(differentHashes(crafted::byteNames(count, true)), size_t(count));
        QCOMPARE(differentHashes(crafted::numbers(count, true)), size_t(count));
        const QStringList keys = crafted::keys(count, true);
        QCOMPARE(std::set<QString>(keys.begin(), keys.end()).size(), size_t(count));
        QCOMPARE(differentHashes(keys), size_t(count));
    }

    // Otherwise, someone who has seen the hashes of one process could make a file for the next one.
    void eachProcessHasItsOwnKey()
    {
        QProcess other;
        other.start(QCoreApplication::applicationFilePath(), { hashOnly });
        QVERIFY(other.waitForFinished());
        const QByteArray hash = other.readAllStandardOutput();
        bool isNumber = false;
        hash.toULongLong(&isNumber);
        QVERIFY2(isNumber, hash.constData());
        QVERIFY(hash != QByteArray::number(qulonglong(hashOfAText())));
    }
};

int main(int argc, char **argv)
{
    if (argc == 2 && qstrcmp(argv[1], hashOnly) == 0) {
        std::printf("%llu", qulonglong(hashOfAText()));
        return 0;
    }
    QCoreApplication application(argc, argv);
    KeyedHashTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "KeyedHashTest.moc"
