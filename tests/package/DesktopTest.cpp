#include <QDir>
#include <QFile>
#include <QMimeDatabase>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace
{

// Runs a program to its end. Returns its output if it failed.
QByteArray problemOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    const bool isFine
        = process.waitForFinished() && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    return isFine ? QByteArray() : program.toLocal8Bit() + " failed: " + process.readAll();
}

QString desktopFile(const char *name)
{
    return QDir(QStringLiteral(VAN_DESKTOP)).filePath(QLatin1String(name));
}

} // namespace

/// Tests the files that describe the command and the file types that it opens to a desktop.
class DesktopTest : public QObject
{
    Q_OBJECT
    QTemporaryDir directory;

private slots:
    void initTestCase()
    {
        const QDir packages(directory.filePath("data/mime/packages"));
        QVERIFY(packages.mkpath("."));
        QVERIFY(QFile::copy(desktopFile("vanlayout-mime.xml"), packages.filePath("vanlayout.xml")));
        QCOMPARE(problemOf(VAN_UPDATE_MIME_DATABASE, { directory.filePath("data/mime") }), QByteArray());
        qputenv("XDG_DATA_HOME", QFile::encodeName(directory.filePath("home")));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(directory.filePath("data")) + ":/usr/share");
    }

    void filesFollowTheirStandards_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QStringList>("arguments");
        const QString entry = desktopFile("org.vanlayout.vanlayout.desktop");
        const QString metadata = desktopFile("org.vanlayout.vanlayout.metainfo.xml");
        QTest::newRow("desktop entry") << VAN_DESKTOP_FILE_VALIDATE << QStringList{ entry };
        QTest::newRow("metadata") << VAN_APPSTREAMCLI << QStringList{ "validate", "--no-net", metadata };
        QTest::newRow("icon") << VAN_XMLLINT << QStringList{ "--noout", desktopFile("org.vanlayout.vanlayout.svg") };
    }
    void filesFollowTheirStandards()
    {
        QFETCH(QString, program);
        QFETCH(QStringList, arguments);
        QCOMPARE(problemOf(program, arguments), QByteArray());
    }

    void typeOfAFileIsKnownByNameOrContent_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("type");
        const QString dictionary = QStringLiteral("application/x-cspro-dictionary");
        const QByteArray json
            = "{\n  \"software\": \"CSPro\", \n  \"version\": 8.0, \n  \"fileType\": \"dictionary\", \n";
        QTest::newRow("text form, by name") << "census.dcf" << QByteArray("[Dictionary]\r\n") << dictionary;
        QTest::newRow("text form, by content") << "census" << QByteArray("[Dictionary]\r\n") << dictionary;
        QTest::newRow("with a byte-order mark") << "census" << QByteArray("\xEF\xBB\xBF[Dictionary]\r\n") << dictionary;
        QTest::newRow("JSON form, by content") << "census" << json << dictionary;
        QTest::newRow("data file") << "census.csdb" << QByteArray("SQLite format 3\0", 16)
                                   << "application/x-cspro-data";
    }
    void typeOfAFileIsKnownByNameOrContent()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(QString, type);
        const QString found = QMimeDatabase().mimeTypeForFileNameAndData(name, content).name();
        QCOMPARE(found, type);
    }
    void otherJsonIsNoDictionary()
    {
        const QByteArray json = "{\"software\": \"x\", \"fileType\": \"dictionary\"}";
        QVERIFY(!QMimeDatabase().mimeTypeForData(json).name().contains("cspro"));
    }

    void entryOpensTheTypesOfTheMetadata()
    {
        QFile entry(desktopFile("org.vanlayout.vanlayout.desktop"));
        QVERIFY(entry.open(QIODevice::ReadOnly));
        const QByteArray lines = entry.readAll();
        QFile metadata(desktopFile("org.vanlayout.vanlayout.metainfo.xml"));
        QVERIFY(metadata.open(QIODevice::ReadOnly));
        const QByteArray component = metadata.readAll();
        QVERIFY(lines.contains("\nExec=vanlayout codebook --open %F\n"));
        for (const char *type : { "application/x-cspro-dictionary", "application/x-cspro-data" }) {
            QVERIFY(lines.contains(QByteArray(type) + ';'));
            QVERIFY(component.contains(QByteArray("<mediatype>") + type + "</mediatype>"));
            QVERIFY(QMimeDatabase().mimeTypeForName(type).isValid());
        }
    }
};
QTEST_GUILESS_MAIN(DesktopTest)
#include "DesktopTest.moc"
