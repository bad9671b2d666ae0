#include "util/UtilFiles.h"
#include "support/OrdinaryUser.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <type_traits>

/// Tests the operations on paths.
class UtilFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(directory.isValid());
        write("file", 10);
        QVERIFY(QDir(directory.path()).mkdir("directory"));
        QVERIFY(QDir(directory.path()).mkpath("data/base/ent"));
    }

    void statusIsTheFirstThatApplies_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("saveStatus");
        QTest::newRow("empty") << QString() << 1 << 1;
        QTest::newRow("no directory") << pathOf("absent/file") << 2 << 2;
        QTest::newRow("directory is a file") << pathOf("file/file") << 2 << 2;
        QTest::newRow("no file") << pathOf("absent") << 3 << 0;
        QTest::newRow("file") << pathOf("file") << 0 << 0;
        QTest::newRow("directory counts as a file") << pathOf("directory") << 0 << 0;
    }
    void statusIsTheFirstThatApplies()
    {
        QFETCH(QString, path);
        QFETCH(int, status);
        QFETCH(int, saveStatus);
        QCOMPARE(UtilFiles::GetFileStatus(path), status);
        QCOMPARE(UtilFiles::CheckFileStatus(path), status);
        for (const QString &other : { QString(), QString("other") }) { // not used
            QCOMPARE(UtilFiles::GetFileSaveStatus(path, other), saveStatus);
            QCOMPARE(UtilFiles::CheckFileSave(path, other), saveStatus == 0);
        }
    }

    void fileThatCannotBeWrittenIsStatus4()
    {
        const QString path = pathOf("closed");
        write("closed", 1);
        QFile::setPermissions(path, QFileDevice::ReadOwner);
        int status = 0;
        int saveStatus = 0;
        bool canBeSaved = true;
        asOrdinaryUser([&] {
            status = UtilFiles::GetFileStatus(path);
            saveStatus = UtilFiles::GetFileSaveStatus(path, QString());
            canBeSaved = UtilFiles::CheckFileSave(path, QString());
        });
        QCOMPARE(status, 4);
        QCOMPARE(saveStatus, 4);
        QVERIFY(!canBeSaved);
    }

    void directoriesAndFilesAreDistinguished()
    {
        QVERIFY(UtilFiles::DirExists(pathOf("directory")));
        QVERIFY(!UtilFiles::DirExists(pathOf("file")));
        QVERIFY(!UtilFiles::DirExists(pathOf("absent")));
        QVERIFY(UtilFiles::FileExists(pathOf("file")));
        QVERIFY(!UtilFiles::FileExists(pathOf("directory")));
        QVERIFY(!UtilFiles::FileExists(pathOf("absent")));
        QVERIFY(!UtilFiles::FileExists(QString()));
    }

    void sizeIsReachedAboveWholeKilobytes_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("limit");
        QTest::addColumn<bool>("isReached");
        QTest::newRow("exactly the limit") << 2048 << 2 << false;
        QTest::newRow("above it") << 2048 << 1 << true;
        QTest::newRow("1023 bytes more") << 2048 + 1023 << 2 << false;
        QTest::newRow("a kilobyte more") << 2048 + 1024 << 2 << true;
        QTest::newRow("empty") << 0 << 0 << false;
        QTest::newRow("empty, below nothing") << 0 << -1 << true;
    }
    void sizeIsReachedAboveWholeKilobytes()
    {
        QFETCH(int, size);
        QFETCH(int, limit);
        write("sized", size);
        QTEST(UtilFiles::FileSizeReachedInKB(pathOf("sized"), limit), "isReached");
    }

    void missingFileHasSizeZero()
    {
        QVERIFY(!UtilFiles::FileSizeReachedInKB(pathOf("absent"), 0));
        QVERIFY(UtilFiles::FileSizeReachedInKB(pathOf("absent"), -1));
    }

    void largeFileIsMeasuredInFull()
    {
        const qint64 size = (qint64(5) << 30) + 1023; // in bytes; more than a 32-bit int can hold
        QFile file(pathOf("large"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(size)); // takes no space on the disk
        QVERIFY(UtilFiles::FileSizeReachedInKB(pathOf("large"), (5 << 20) - 1));
        QVERIFY(!UtilFiles::FileSizeReachedInKB(pathOf("large"), 5 << 20));
        QVERIFY(file.remove());
    }

#ifdef Q_OS_UNIX
    void linksAreFollowed()
    {
        QVERIFY(QFile::link(pathOf("file"), pathOf("toFile")));
        QVERIFY(QFile::link(pathOf("directory"), pathOf("toDirectory")));
        QVERIFY(QFile::link(pathOf("absent"), pathOf("toNothing")));
        QVERIFY(UtilFiles::FileExists(pathOf("toFile")) && !UtilFiles::DirExists(pathOf("toFile")));
        QVERIFY(!UtilFiles::FileExists(pathOf("toDirectory")) && UtilFiles::DirExists(pathOf("toDirectory")));
        QVERIFY(!UtilFiles::FileExists(pathOf("toNothing")) && !UtilFiles::DirExists(pathOf("toNothing")));
        QCOMPARE(UtilFiles::GetFileStatus(pathOf("toFile")), 0);
        QCOMPARE(UtilFiles::GetFileStatus(pathOf("toDirectory/absent")), 3);
    }

    void deviceIsNeitherFileNorDirectory()
    {
        QVERIFY(!UtilFiles::FileExists("/dev/null"));
        QVERIFY(!UtilFiles::DirExists("/dev/null"));
    }
#endif

    void relativePathStartsAtTheCurrentDirectory()
    {
        const QString former = QDir::currentPath();
        QVERIFY(QDir::setCurrent(directory.path()));
        const int ofFile = UtilFiles::GetFileStatus("file");
        const int ofAbsentFile = UtilFiles::GetFileStatus("absent");
        const int ofFileInAbsentDirectory = UtilFiles::GetFileStatus("absent/file");
        const int ofAbsentFileInDirectory = UtilFiles::GetFileStatus("directory/x");
        const bool isFile = UtilFiles::FileExists("directory/../file");
        const bool isDirectory = UtilFiles::DirExists(".");
        QDir::setCurrent(former);
        QCOMPARE(ofFile, 0);
        QCOMPARE(ofAbsentFile, 3);
        QCOMPARE(ofFileInAbsentDirectory, 2);
        QCOMPARE(ofAbsentFileInDirectory, 3);
        QVERIFY(isFile && isDirectory);
    }

    void textsAreTakenByValue()
    {
        QVERIFY((std::is_same<decltype(&UtilFiles::GetFileStatus), int (*)(QString)>::value));
        QVERIFY((std::is_same<decltype(&UtilFiles::CheckFileStatus), int (*)(QString)>::value));
        QVERIFY((std::is_same<decltype(&UtilFiles::GetFileSaveStatus), int (*)(QString, QString)>::value));
        QVERIFY((std::is_same<decltype(&UtilFiles::CheckFileSave), bool (*)(QString, QString)>::value));
        QVERIFY((std::is_same<decltype(&UtilFiles::DirExists), bool (*)(QString)>::value));
        QVERIFY((std::is_same<decltype(&UtilFiles::FileExists), bool (*)(QString)>::value));
        QVERIFY((std::is_same<decltype(&UtilFiles::FileSizeReachedInKB), bool (*)(QString, int)>::value));
        QVERIFY((std::is_same<decltype(&UtilFiles::GetFileDir), QString (*)(QString)>::value));
        QVERIFY((std::is_same<decltype(&UtilFiles::getDataBaseEntityFilePath), QString (*)(QString)>::value));
    }

    void directoryOfAFileIsAbsolute()
    {
        QCOMPARE(UtilFiles::GetFileDir("/data/base/file.ext"), QString("/data/base"));
        QCOMPARE(UtilFiles::GetFileDir("file.ext"), QDir::currentPath());
        QCOMPARE(UtilFiles::GetFileDir(QString()), QDir::currentPath());
        QCOMPARE(UtilFiles::GetFileDir("/data/base/"), QString("/data/base"));
    }

    void directoryThatIsNotThereIsEmptyAndNotNull()
    {
        const QString before = QDir::currentPath();
        {
            const QTemporaryDir removedSoon;
            QVERIFY(QDir::setCurrent(removedSoon.path()));
        }
        const QString removed = UtilFiles::GetFileDir("file.ext");
        QVERIFY(QDir::setCurrent(before));
        QCOMPARE(removed, QString());
        QVERIFY(!removed.isNull());
    }

    void directoryAboveTheFilesOwnIsRemoved_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("repaired");
        const QDir current = QDir::current();
        QDir above = current;
        above.cdUp();
        QTest::newRow("three directories") << "/nowhere/base/ent/file.ext"
                                           << "/nowhere/ent/file.ext";
        QTest::newRow("two directories") << "/nowhere/ent/file.ext"
                                         << "/ent/file.ext";
        QTest::newRow("one directory") << "/nowhere/file.ext"
                                       << "/nowhere/file.ext";
        QTest::newRow("in the root") << "/absent.ext"
                                     << "//absent.ext";
        QTest::newRow("four directories") << "/nowhere/data/base/ent/file.ext"
                                          << "/nowhere/data/ent/file.ext";
        QTest::newRow("no file name") << "/nowhere/base/ent/"
                                      << "/nowhere/ent/";
        QTest::newRow("a directory is no file") << pathOf("data/base/ent") << pathOf("base/ent"); // "data" is removed
        QTest::newRow("dots go") << "/nowhere/base/x/../ent/file.ext"
                                 << "/nowhere/ent/file.ext";
        QTest::newRow("no path") << QString() << "/";
        // This is not a drive here, but a relative directory.
        QTest::newRow("drive of another system")
            << "C:/data/base/ent/file.ext" << QDir::currentPath() + "/C:/data/ent/file.ext";
        QTest::newRow("relative name") << "absent.ext"
                                       << QString(QFileInfo(above.path()).absolutePath() + '/' + current.dirName()
                                                  + "/absent.ext")
                                              .replace("//", "/");
    }
    void directoryAboveTheFilesOwnIsRemoved()
    {
        QFETCH(QString, path);
        QFETCH(QString, repaired);
        QCOMPARE(UtilFiles::getDataBaseEntityFilePath(path), QDir::toNativeSeparators(repaired));
    }

    void pathThatExistsStays()
    {
        const QString path = directory.path() + "//directory/../file";
        QCOMPARE(UtilFiles::getDataBaseEntityFilePath(path), path);
    }

    void assignmentDoesNothing()
    {
        UtilFiles files;
        const UtilFiles other;
        QVERIFY(&(files = other) == &files);
        QVERIFY(&(files = UtilFiles()) == &files);
        QVERIFY(std::is_empty<UtilFiles>::value);
    }

private:
    QString pathOf(const QString &name) const
    {
        return directory.filePath(name);
    }
    void write(const QString &name, int size) const
    {
        QFile file(pathOf(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray(size, 'x')) != size)
            qFatal("%s cannot be written", qPrintable(name));
    }

    QTemporaryDir directory;
};

QTEST_APPLESS_MAIN(UtilFilesTest)
#include "UtilFilesTest.moc"
