#include "util/UtilFiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <type_traits>

/// Answers about paths.
class UtilFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(folder.isValid());
        write("file", 10);
        QVERIFY(QDir(folder.path()).mkdir("folder"));
    }

    void statusIsTheFirstThatApplies_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("saveStatus");
        QTest::newRow("empty") << QString() << 1 << 1;
        QTest::newRow("no folder") << pathOf("absent/file") << 2 << 2;
        QTest::newRow("folder is a file") << pathOf("file/file") << 2 << 2;
        QTest::newRow("no file") << pathOf("absent") << 3 << 0;
        QTest::newRow("file") << pathOf("file") << 0 << 0;
        QTest::newRow("folder counts as a file") << pathOf("folder") << 0 << 0;
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
        if (QFileInfo(path).isWritable())
            QSKIP("this user may write every file");
        QCOMPARE(UtilFiles::GetFileStatus(path), 4);
        QCOMPARE(UtilFiles::GetFileSaveStatus(path, QString()), 4);
        QVERIFY(!UtilFiles::CheckFileSave(path, QString()));
    }

    void foldersAndFilesAreToldApart()
    {
        QVERIFY(UtilFiles::DirExists(pathOf("folder")));
        QVERIFY(!UtilFiles::DirExists(pathOf("file")));
        QVERIFY(!UtilFiles::DirExists(pathOf("absent")));
        QVERIFY(UtilFiles::FileExists(pathOf("file")));
        QVERIFY(!UtilFiles::FileExists(pathOf("folder")));
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

    void folderOfAFileIsAbsolute()
    {
        QCOMPARE(UtilFiles::GetFileDir("/data/base/file.ext"), QString("/data/base"));
        QCOMPARE(UtilFiles::GetFileDir("file.ext"), QDir::currentPath());
        QCOMPARE(UtilFiles::GetFileDir("/data/base/"), QString("/data/base"));
    }

    void folderAboveTheFilesOwnIsRemoved_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("repaired");
        const QDir current = QDir::current();
        QDir above = current;
        above.cdUp();
        QTest::newRow("three folders") << "/nowhere/base/ent/file.ext"
                                       << "/nowhere/ent/file.ext";
        QTest::newRow("two folders") << "/nowhere/ent/file.ext"
                                     << "/ent/file.ext";
        QTest::newRow("one folder") << "/nowhere/file.ext"
                                    << "/nowhere/file.ext";
        QTest::newRow("dots go") << "/nowhere/base/x/../ent/file.ext"
                                 << "/nowhere/ent/file.ext";
        QTest::newRow("relative name") << "absent.ext"
                                       << QString(QFileInfo(above.path()).absolutePath() + '/' + current.dirName()
                                                  + "/absent.ext")
                                              .replace("//", "/");
    }
    void folderAboveTheFilesOwnIsRemoved()
    {
        QFETCH(QString, path);
        QFETCH(QString, repaired);
        QCOMPARE(UtilFiles::getDataBaseEntityFilePath(path), QDir::toNativeSeparators(repaired));
    }

    void pathThatExistsStays()
    {
        const QString path = folder.path() + "//folder/../file";
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
    QString pathOf(const QString &name) const { return folder.filePath(name); }
    void write(const QString &name, int size) const
    {
        QFile file(pathOf(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray(size, 'x')) != size)
            qFatal("%s cannot be written", qPrintable(name));
    }

    QTemporaryDir folder;
};

QTEST_APPLESS_MAIN(UtilFilesTest)
#include "UtilFilesTest.moc"
