#include "support/NotesLine.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace
{

struct Answer {
    int status = -1;
    QByteArray out;
    QByteArray err;
};

// Returns the output of the tool for a file of a directory, which is named without its path.
Answer show(const QString &directory, const QString &name)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    QProcess tool;
    tool.setProcessEnvironment(environment);
    tool.setWorkingDirectory(directory);
    tool.start(QStringLiteral(VAN_TOOL),
               { QStringLiteral("fields"), QStringLiteral("--format"), QStringLiteral("json"), name });
    if (!tool.waitForFinished() || tool.exitStatus() != QProcess::NormalExit)
        return {};
    return { tool.exitCode(), tool.readAllStandardOutput(), tool.readAllStandardError() };
}

QStringList baseNames(const QString &directory, const QString &suffix)
{
    QStringList names;
    const auto files = QDir(directory).entryInfoList({ QStringLiteral("*.") + suffix }, QDir::Files, QDir::Name);
    for (const QFileInfo &file : files)
        names.append(file.completeBaseName());
    return names;
}

// Returns the files of one suffix that have no counterpart of the other.
QStringList lonely(const QString &directory, const QString &suffix, const QString &fellow)
{
    QStringList names;
    for (const QString &name : baseNames(directory, suffix)) {
        if (!QDir(directory).exists(name + QLatin1Char('.') + fellow))
            names.append(name);
    }
    return names;
}

QStringList dataWithoutAnswer(const QString &directory)
{
    return lonely(directory, QStringLiteral("dcf"), QStringLiteral("json"));
}

QStringList answersWithoutData(const QString &directory)
{
    return lonely(directory, QStringLiteral("json"), QStringLiteral("dcf"));
}

void makeFile(const QString &path)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

// A directory for each form of a dictionary.
const QStringList layouts = { QStringLiteral(VAN_TEST_DATA "/cspro"), QStringLiteral(VAN_TEST_DATA "/cspro8") };
const QString examples = QStringLiteral(VAN_EXAMPLES);

} // namespace

// Tests dictionaries against layouts that a person has read and found correct. The target update-golden writes new
// layouts.
class GoldenLayoutsTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void everyDictionaryHasItsExpectedFile()
    {
        for (const QString &directory : layouts) {
            QVERIFY(!baseNames(directory, QStringLiteral("dcf")).isEmpty());
            QCOMPARE(dataWithoutAnswer(directory), QStringList());
        }
    }

    void everyExpectedFileHasItsDictionary()
    {
        for (const QString &directory : layouts)
            QCOMPARE(answersWithoutData(directory), QStringList());
    }

    void fileWithoutItsFellowIsFound()
    {
        const QTemporaryDir directory;
        makeFile(directory.filePath(QStringLiteral("both.dcf")));
        makeFile(directory.filePath(QStringLiteral("both.json")));
        makeFile(directory.filePath(QStringLiteral("data.dcf")));
        makeFile(directory.filePath(QStringLiteral("answer.json")));
        QCOMPARE(dataWithoutAnswer(directory.path()), QStringList{ QStringLiteral("data") });
        QCOMPARE(answersWithoutData(directory.path()), QStringList{ QStringLiteral("answer") });
    }

    void layoutEqualsItsExpectedFile_data()
    {
        QTest::addColumn<QString>("directory");
        QTest::addColumn<QString>("name");
        for (const QString &directory : layouts) {
            const QString form = QDir(directory).dirName();
            for (const QString &name : baseNames(directory, QStringLiteral("dcf")))
                QTest::newRow(qPrintable(form + QLatin1Char('/') + name)) << directory << name;
        }
    }
    void layoutEqualsItsExpectedFile()
    {
        QFETCH(QString, directory);
        QFETCH(QString, name);
        QFile file(directory + QLatin1Char('/') + name + QStringLiteral(".json"));
        QVERIFY2(file.open(QIODevice::ReadOnly), "no answer: build the target update-golden, then read what it wrote");
        const QByteArray expected = file.readAll();
        const Answer answer = show(directory, name + QStringLiteral(".dcf"));
        if (answer.out != expected) {
            const QByteArrayList got = answer.out.split('\n');
            const QByteArrayList wanted = expected.split('\n');
            for (int i = 0; i < qMin(got.size(), wanted.size()); ++i)
                QCOMPARE(got.at(i), wanted.at(i));
        }
        QCOMPARE(answer.out, expected);
        const bool isError = QJsonDocument::fromJson(expected).object().contains(QStringLiteral("error"));
        QCOMPARE(answer.status, isError ? 2 : 0);
        QCOMPARE(withoutNotesLine(answer.err).count('\n'), isError ? 1 : 0);
    }

    void exampleShowsItsVariables_data()
    {
        QTest::addColumn<QString>("name");
        QVERIFY(!baseNames(examples, QStringLiteral("dcf")).isEmpty());
        for (const QString &name : baseNames(examples, QStringLiteral("dcf")))
            QTest::newRow(qPrintable(name)) << name;
    }
    void exampleShowsItsVariables()
    {
        QFETCH(QString, name);
        const Answer answer = show(examples, name + QStringLiteral(".dcf"));
        QCOMPARE(withoutNotesLine(answer.err), QByteArray());
        QCOMPARE(answer.status, 0);
        const QJsonArray fields
            = QJsonDocument::fromJson(answer.out).object().value(QStringLiteral("fields")).toArray();
        QVERIFY(!fields.isEmpty());
        for (const QJsonValue &field : fields) {
            QVERIFY(!field[QStringLiteral("name")].toString().isEmpty());
            QVERIFY(!field[QStringLiteral("label")].toString().isEmpty());
            QVERIFY(field[QStringLiteral("length")].toInt() > 0);
        }
    }
};

QTEST_GUILESS_MAIN(GoldenLayoutsTest)
#include "GoldenLayoutsTest.moc"
