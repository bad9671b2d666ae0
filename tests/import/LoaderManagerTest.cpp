#include "import/LoaderManager_p.h"
#include "import/DataProvider.h"
#include "support/DebugCapture.h"
#include "support/FakeImporter.h"
#include "support/Thrown.h"

#include <QPointer>
#include <QtTest>

#include <memory>
#include <type_traits>

struct TestAccess {
    static void setType(TVpDataProvider &provider, const QString &type) { provider.dataProviderType = type; }
};

namespace
{

QString notRegisteredMessage(const QString &format)
{
    const QString head = QStringLiteral("Class : DataImport\r\nError : k\r\n\r\n"
                                        "Message : System Error. Format not registered");
    return format.isEmpty() ? head : head + QStringLiteral("\r\n[") + format + QStringLiteral(" ]");
}

QString address(const void *pointer)
{
    return QStringLiteral("0x") + QString::number(quintptr(pointer), 16);
}

// The error and the log lines of a call.
struct Outcome {
    template <typename Work> explicit Outcome(Work work)
    {
        const DebugCapture capture;
        error = thrownBy(work);
        lines = capture.taken();
    }
    int code() const { return error ? error->getCode() : 0; }

    std::unique_ptr<VpErrorManager> error;
    QStringList lines;
};

// Removes the registry, which the library would keep.
void releaseRegistry()
{
    if (loaderManager)
        delete loaderManager->formats;
    delete loaderManager;
    loaderManager = nullptr;
}

} // namespace

class LoaderManagerTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QCOMPARE(loaderManager, nullptr); }
    void cleanup() { releaseRegistry(); }

    void askingWithoutARegistryThrows106AndLogsNothing_data() { formatRows(); }
    void askingWithoutARegistryThrows106AndLogsNothing()
    {
        QFETCH(QString, format);
        for (int time = 0; time < 2; ++time) {
            const Outcome outcome([&] { IsFormatRegistered(format); });
            QCOMPARE(outcome.code(), 106);
            QCOMPARE(outcome.error->getClassName(), QString("DataImport"));
            QCOMPARE(outcome.error->getText(), QString());
            QCOMPARE(outcome.error->catalogueMessage(), QString("System Error. Register Loader not initialized"));
            QCOMPARE(outcome.lines, QStringList());
            QCOMPARE(loaderManager, nullptr);
        }
    }

    void findingAFieldThrows106WhateverTheArguments_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("name1");
        QTest::addColumn<QString>("name2");
        QTest::newRow("no type") << ""
                                 << "AGE"
                                 << "SEX";
        QTest::newRow("a type") << "CSPRO"
                                << "AGE"
                                << "SEX";
        QTest::newRow("no names") << "CSV"
                                  << ""
                                  << "";
    }
    void findingAFieldThrows106WhateverTheArguments()
    {
        QFETCH(QString, type);
        QFETCH(QString, name1);
        QFETCH(QString, name2);
        FakeField age(nullptr, "AGE");
        FakeImporter importer("layout.dcf", type);
        importer.layout = { &age };
        importer.openFile();
        TVpDataProvider provider;
        provider.setDataProviderType(type);
        provider.setImportData(&importer);
        for (int time = 0; time < 2; ++time) {
            const Outcome outcome([&] { provider.findField(name1, name2); });
            QCOMPARE(outcome.code(), 106);
            QCOMPARE(outcome.error->getClassName(), QString("DataImport"));
            QCOMPARE(outcome.lines, QStringList());
            QCOMPARE(loaderManager, nullptr);
        }
    }

    void registeringAFormatLeavesTheRegistryAway()
    {
        FakeImporter importer("layout.dcf", "CSPRO");
        importer.registerIOFormat();
        QCOMPARE(loaderManager, nullptr);
        QCOMPARE(Outcome([] { IsFormatRegistered("CSPRO"); }).code(), 106);
    }

    void registeringAFormatAddsNothingToARegistry()
    {
        loaderManager = new TLoaderManager;
        FakeImporter importer("layout.dcf", "CSPRO");
        importer.registerIOFormat();
        QCOMPARE(*loaderManager->formats, QStringList());
    }

    void registryWithoutAListThrows106()
    {
        loaderManager = new TLoaderManager;
        delete loaderManager->formats;
        loaderManager->formats = nullptr;
        const Outcome outcome([] { IsFormatRegistered("CSPRO"); });
        QCOMPARE(outcome.code(), 106);
        QCOMPARE(outcome.lines, QStringList());
    }

    void emptyRegistryKnowsNoFormat_data() { formatRows(); }
    void emptyRegistryKnowsNoFormat()
    {
        QFETCH(QString, format);
        loaderManager = new TLoaderManager;
        const DebugCapture capture;
        QCOMPARE(IsFormatRegistered(format), false);
        QCOMPARE(capture.taken(), QStringList());
    }

    void formatIsComparedAsAWhole_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<bool>("expected");
        QTest::newRow("first") << "CSPRO" << true;
        QTest::newRow("last") << "STATA" << true;
        QTest::newRow("other case") << "cspro" << false;
        QTest::newRow("part") << "CSP" << false;
        QTest::newRow("empty") << "" << false;
    }
    void formatIsComparedAsAWhole()
    {
        QFETCH(QString, format);
        QFETCH(bool, expected);
        loaderManager = new TLoaderManager;
        *loaderManager->formats << "CSPRO"
                                << "STATA";
        QCOMPARE(IsFormatRegistered(format), expected);
    }

    void newManagerHasANewEmptyListAndNoParent()
    {
        const TLoaderManager one;
        const TLoaderManager other;
        QVERIFY(one.formats && other.formats && one.formats != other.formats);
        QCOMPARE(*one.formats, QStringList());
        QCOMPARE(one.parent(), nullptr);
        delete one.formats;
        delete other.formats;
    }

    void managerIsAPlainQObject()
    {
        QVERIFY((std::is_base_of_v<QObject, TLoaderManager>));
        // No signals, no slots; only the destructor is overridden.
        QVERIFY((std::is_same_v<decltype(&TLoaderManager::metaObject), const QMetaObject *(QObject::*)() const>));
        QVERIFY((std::is_same_v<decltype(&TLoaderManager::event), bool (QObject::*)(QEvent *)>));
        QVERIFY((std::is_same_v<decltype(&TLoaderManager::eventFilter), bool (QObject::*)(QObject *, QEvent *)>));
    }

    void listOutlivesItsManager()
    {
        auto manager = std::make_unique<TLoaderManager>();
        const std::unique_ptr<QStringList> formats(manager->formats);
        formats->append("CSPRO");
        manager.reset();
        QCOMPARE(*formats, QStringList("CSPRO"));
    }

    void askingForALoaderThrows107WithTheFormatAsText_data() { formatRows(); }
    void askingForALoaderThrows107WithTheFormatAsText()
    {
        QFETCH(QString, format);
        const Outcome outcome([&] { GetDataClassLoader(format); });
        QCOMPARE(outcome.code(), 107);
        QCOMPARE(outcome.error->getClassName(), QString("DataImport"));
        QCOMPARE(outcome.error->getText(), format);
        QCOMPARE(outcome.lines,
                 QStringList({ "GetDataClassLoader - In", "GetDataClassLoader - 2 -1", "GetDataClassLoader - 4",
                               notRegisteredMessage(format) }));
    }

    void askingForALoaderMakesARegistry()
    {
        const Outcome outcome([] { GetDataClassLoader("SPSS"); });
        QVERIFY(loaderManager);
        QCOMPARE(*loaderManager->formats, QStringList());
        QCOMPARE(loaderManager->parent(), nullptr);
        QCOMPARE(IsFormatRegistered("SPSS"), false);
    }

    void askingForALoaderDropsTheFormerRegistryWithoutReleasingIt()
    {
        const auto former = std::make_unique<TLoaderManager>();
        const std::unique_ptr<QStringList> formats(former->formats);
        formats->append("SPSS");
        const QPointer<QObject> watch(former.get());
        loaderManager = former.get();
        // The format is registered with the former registry, and unknown to the new one.
        const Outcome outcome([] { GetDataClassLoader("SPSS"); });
        QCOMPARE(outcome.code(), 107);
        QVERIFY(loaderManager != former.get());
        QVERIFY(!watch.isNull());
        QCOMPARE(*former->formats, QStringList("SPSS"));
    }

    void findingAFieldOfAFormatUnknownToARegistryGivesNull()
    {
        loaderManager = new TLoaderManager;
        TVpDataProvider provider;
        const DebugCapture capture;
        QCOMPARE(provider.findField("AGE", "SEX"), nullptr);
        QCOMPARE(capture.taken(), QStringList());
    }

    void findingAFieldOfARegisteredFormatThrows107()
    {
        const auto former = std::make_unique<TLoaderManager>();
        const std::unique_ptr<QStringList> formats(former->formats);
        formats->append("CSPRO");
        loaderManager = former.get();
        TVpDataProvider provider;
        TestAccess::setType(provider, "CSPRO");
        const Outcome outcome([&] { provider.findField("AGE", "SEX"); });
        QCOMPARE(outcome.code(), 107);
        QCOMPARE(outcome.error->getText(), QString("CSPRO"));
        QCOMPARE(outcome.lines.value(0), QString("GetDataClassLoader - In"));
    }

    void registeredFormatHasNoLoader_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<int>("index");
        QTest::newRow("first") << "CSPRO" << 0;
        QTest::newRow("last") << "STATA" << 2;
        QTest::newRow("registered twice: the first") << "CSV" << 1;
    }
    void registeredFormatHasNoLoader()
    {
        QFETCH(QString, format);
        QFETCH(int, index);
        TLoaderManager manager;
        const std::unique_ptr<QStringList> formats(manager.formats);
        *formats << "CSPRO"
                 << "CSV"
                 << "STATA"
                 << "CSV";
        TDataImport *loader = reinterpret_cast<TDataImport *>(&manager); // anything but null
        const Outcome outcome([&] { loader = loaderFromManager(&manager, format); });
        QVERIFY(!outcome.error);
        QCOMPARE(loader, nullptr);
        QCOMPARE(outcome.lines,
                 QStringList({ QString("GetDataClassLoader - 2 %1").arg(index), "GetDataClassLoader - 3" }));
    }

    void unregisteredFormatThrows107()
    {
        TLoaderManager manager;
        const std::unique_ptr<QStringList> formats(manager.formats);
        *formats << "CSPRO";
        const Outcome outcome([&] { loaderFromManager(&manager, "cspro"); });
        QCOMPARE(outcome.code(), 107);
        QCOMPARE(outcome.lines,
                 QStringList({ "GetDataClassLoader - 2 -1", "GetDataClassLoader - 4", notRegisteredMessage("cspro") }));
    }

    void managerWithoutAListThrows107()
    {
        TLoaderManager manager;
        delete manager.formats;
        manager.formats = nullptr;
        const Outcome outcome([&] { loaderFromManager(&manager, "SPSS"); });
        QCOMPARE(outcome.code(), 107);
        QCOMPARE(outcome.error->getClassName(), QString("DataImport"));
        QCOMPARE(outcome.error->getText(), QString("SPSS"));
        QCOMPARE(outcome.lines.size(), 2);
        // The text itself ends in a blank.
        const QString head = "GetDataClassLoader - 1  ";
        QVERIFY(outcome.lines.first().startsWith(head));
        const QStringList parts = outcome.lines.first().mid(head.size()).split(' ');
        QCOMPARE(parts, QStringList({ address(&manager), address(&manager.formats) }));
        QCOMPARE(outcome.lines.last(), notRegisteredMessage("SPSS"));
    }

private:
    static void formatRows()
    {
        QTest::addColumn<QString>("format");
        QTest::newRow("SPSS") << "SPSS";
        QTest::newRow("CSPRO") << "CSPRO";
        QTest::newRow("NONE") << "NONE";
        QTest::newRow("empty") << "";
    }
};

QTEST_GUILESS_MAIN(LoaderManagerTest)
#include "LoaderManagerTest.moc"
