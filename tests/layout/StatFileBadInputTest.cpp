#include "StatLayout.h"
#include "support/ScarceMemory.h"

#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <iterator>
#include <limits>
#include <thread>
#include <vector>

using namespace vanlayout;

Q_DECLARE_METATYPE(StatFile::Kind)

namespace
{

constexpr int headSize = 400;

// Small files of each kind with elements of all kinds.
struct Sample {
    const char *name;
    StatFile::Kind kind;
    int version;
};
const Sample samples[] = {
    { "sav", StatFile::sav, 0 },       { "zsav", StatFile::zsav, 0 },     { "por", StatFile::por, 0 },
    { "dta 104", StatFile::dta, 104 }, { "dta 105", StatFile::dta, 105 }, { "dta 114", StatFile::dta, 114 },
    { "dta 117", StatFile::dta, 117 }, { "dta 118", StatFile::dta, 118 }, { "dta 119", StatFile::dta, 119 },
    { "xpt 5", StatFile::xpt, 5 },     { "xpt 8", StatFile::xpt, 8 },     { "sas7bdat", StatFile::sas7bdat, 0 },
};

bool isSas(StatFile::Kind kind)
{
    return kind == StatFile::sas7bdat || kind == StatFile::xpt;
}

QByteArray bytesOf(const Sample &sample)
{
    StatFile file(sample.kind, sample.version);
    const bool isSpss = !isSas(sample.kind) && sample.kind != StatFile::dta;
    readstat_writer_set_file_label(file.writer(), "The label");
    if (!isSas(sample.kind) && sample.version != 104)
        readstat_add_note(file.writer(), "A note");
    const readstat_label_set_t *numbers = nullptr;
    if (!isSas(sample.kind))
        numbers = file.labels("yesno", { { 1, "Yes" }, { 2, "No" } });
    readstat_variable_t *age = file.variable("AGE", READSTAT_TYPE_DOUBLE, "The age", nullptr, numbers);
    file.text("NAME", 20, "The name", nullptr,
              sample.kind == StatFile::sav ? file.textLabels("names", { { "a long text", "Label" } }) : nullptr);
    file.variable("SEX", READSTAT_TYPE_DOUBLE, "", nullptr, numbers);
    if (isSpss) {
        readstat_variable_add_missing_double_range(age, 97, 99);
        readstat_writer_set_fweight_variable(file.writer(), age);
    }
    return bytesOf(file, 2);
}

void addSamples()
{
    QTest::addColumn<QByteArray>("bytes");
    for (const Sample &sample : samples)
        QTest::newRow(sample.name) << bytesOf(sample);
}

QByteArray catalog()
{
    StatFile file(StatFile::sas7bcat);
    file.labels("YESNO", { { 1, "Yes" }, { 2, "No" } });
    return bytesOf(file, 0);
}

// Whether there is either a layout without errors or only an error, and each message is one line.
bool isSound(const Layout &layout)
{
    const bool isWhole = layout.isRead() ? layout.levels.size() == 1 && layout.format != Format::None
                                         : layout.levels.isEmpty() && layout.problems.size() == 1
            && layout.extras.isEmpty() && layout.format == Format::None;
    return isWhole && std::all_of(layout.problems.begin(), layout.problems.end(), [](const Problem &problem) {
               return !problem.id.isEmpty() && !problem.message.isEmpty() && !problem.message.contains('\n');
           });
}

/// A device that counts the bytes that are read, and can fail from a position on.
class WatchedDevice : public QBuffer
{
public:
    explicit WatchedDevice(QByteArray *bytes, qint64 failingFrom = std::numeric_limits<qint64>::max())
        : QBuffer(bytes)
        , firstBadByte(failingFrom)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    qint64 bytesRead = 0;

protected:
    qint64 readData(char *data, qint64 size) override
    {
        if (pos() + size > firstBadByte) {
            setErrorString("the disk is broken");
            return -1;
        }
        const qint64 count = QBuffer::readData(data, size);
        bytesRead += std::max<qint64>(count, 0);
        return count;
    }

private:
    qint64 firstBadByte;
};

} // namespace

/// Tests damaged and hostile statistical files.
class StatFileBadInputTest : public QObject
{
    Q_OBJECT

private slots:
    void aFileCutAnywhereGivesWhatWasReadOrAReason_data() { addSamples(); }
    void aFileCutAnywhereGivesWhatWasReadOrAReason();
    void changedBytesDoNoHarm_data() { addSamples(); }
    void changedBytesDoNoHarm();
    void aChangedCatalogDoesNoHarm();
    void aFailingDeviceGivesNoLayout_data() { addSamples(); }
    void aFailingDeviceGivesNoLayout();
    void rowsAreNotRead_data();
    void rowsAreNotRead();
    void labelsThatLieUponEachOtherAreBounded();
    void aCatalogThatLeadsBackToItselfEnds();
    void aLabelThatReadStatCutsIsReported();
    void memoryThatRunsOutIsRaised_data() { addSamples(); }
    void memoryThatRunsOutIsRaised();
    void filesAreReadOnSeveralThreads();
};

void StatFileBadInputTest::aFileCutAnywhereGivesWhatWasReadOrAReason()
{
    QFETCH(QByteArray, bytes);
    const Layout whole = layoutOf(bytes);
    QVERIFY(whole.isRead());
    QVERIFY(!itemsOf(whole).isEmpty());
    for (int size = 0; size < bytes.size(); ++size) {
        const Layout layout = layoutOf(bytes.left(size));
        QVERIFY2(isSound(layout), qPrintable(QString::number(size)));
        QVERIFY2(layout.isRead() ? itemsOf(layout).size() == itemsOf(whole).size() : layout.problems.size() == 1,
                 qPrintable(QString::number(size)));
    }
}

void StatFileBadInputTest::changedBytesDoNoHarm()
{
    QFETCH(QByteArray, bytes);
    for (int place = 0; place < bytes.size(); ++place) {
        // Most bytes of a SAS data set are padding.
        if (place > 0 && bytes.at(place) == 0 && bytes.at(place - 1) == 0 && place % 7 != 0)
            continue;
        for (const int bits : { 0xFF, 0x01, 0x80 }) {
            if (place >= headSize && bits != 0xFF)
                break;
            QByteArray changed = bytes;
            changed[place] = char(changed.at(place) ^ bits);
            QVERIFY2(isSound(layoutOf(changed)), qPrintable(QString("%1 %2").arg(place).arg(bits)));
        }
    }
}

void StatFileBadInputTest::aChangedCatalogDoesNoHarm()
{
    StatFile file(StatFile::sas7bdat);
    file.variable("SEX", READSTAT_TYPE_DOUBLE, "", "YESNO");
    const QByteArray dataSet = bytesOf(file);
    const QTemporaryDir directory;
    const QString path = directory.filePath("catalog.sas7bcat");
    const auto layoutWith = [&](const QByteArray &bytes) {
        QFile written(path);
        return written.open(QIODevice::WriteOnly) && written.write(bytes) == bytes.size() && written.flush()
            ? layoutOf(dataSet, { path })
            : Layout();
    };
    const QByteArray bytes = catalog();
    QCOMPARE(itemsOf(layoutWith(bytes)).value(0).valueSets.size(), 1);
    for (int place = 0; place < bytes.size(); ++place) {
        if (place > 0 && bytes.at(place) == 0 && bytes.at(place - 1) == 0 && place % 31 != 0)
            continue;
        QByteArray changed = bytes;
        changed[place] = char(changed.at(place) ^ 0xFF);
        for (const QByteArray &damaged : { changed, bytes.left(place) }) {
            const Layout layout = layoutWith(damaged);
            QVERIFY2(layout.isRead() && isSound(layout), qPrintable(QString::number(place)));
        }
    }
}

void StatFileBadInputTest::aFailingDeviceGivesNoLayout()
{
    QFETCH(QByteArray, bytes);
    WatchedDevice whole(&bytes);
    QVERIFY(readLayout(whole, "name").isRead());
    for (int place = 0; place < bytes.size(); place += 97) {
        WatchedDevice device(&bytes, place);
        const Layout layout = readLayout(device, "name");
        if (layout.isRead()) // the bytes after this position were not necessary
            continue;
        QCOMPARE(layout.error()->id, QString("cannot-read"));
        QCOMPARE(layout.error()->message, QString("cannot be read: the disk is broken"));
    }
    WatchedDevice device(&bytes, bytes.size() / 4);
    QVERIFY(!readLayout(device, "name").isRead());
}

void StatFileBadInputTest::rowsAreNotRead_data()
{
    QTest::addColumn<StatFile::Kind>("kind");
    QTest::newRow("sav") << StatFile::sav;
    QTest::newRow("sav with compressed rows") << StatFile::savOfRows;
    QTest::newRow("zsav") << StatFile::zsav;
    QTest::newRow("por") << StatFile::por;
    QTest::newRow("dta") << StatFile::dta;
    QTest::newRow("xpt") << StatFile::xpt;
    QTest::newRow("sas7bdat") << StatFile::sas7bdat;
}

void StatFileBadInputTest::rowsAreNotRead()
{
    QFETCH(StatFile::Kind, kind);
    const auto bytesReadFor = [kind](int rows) {
        StatFile file(kind);
        for (int i = 0; i < 100; ++i)
            file.variable(("V" + std::to_string(i)).c_str(), READSTAT_TYPE_DOUBLE);
        QByteArray bytes = bytesOf(file, rows);
        WatchedDevice device(&bytes);
        if (itemsOf(readLayout(device, "name")).size() != 100)
            qFatal("the file cannot be read");
        return device.bytesRead;
    };
    constexpr int rows = 5000;
    constexpr qint64 readAhead = 1 << 17;
    const qint64 few = bytesReadFor(1);
    const qint64 many = bytesReadFor(rows);
    // The header of each page of a SAS data set is read, because some variables may be described at its end.
    const qint64 bytesOfRows = qint64(rows) * 100 * 8;
    QVERIFY2(many - few <= (kind == StatFile::sas7bdat ? bytesOfRows / 2 : readAhead),
             qPrintable(QString("%1 %2").arg(few).arg(many)));
}

void StatFileBadInputTest::labelsThatLieUponEachOtherAreBounded()
{
    // A label table in which many labels refer to the same long text.
    StatFile file(StatFile::dta, 118);
    file.variable("V", READSTAT_TYPE_INT32, "", nullptr, file.intLabels("set", { { 1, "Yes" } }));
    QByteArray bytes = bytesOf(file);
    constexpr int labels = 100000;
    constexpr int textSize = 32000;
    QByteArray table(2 * 4 + 2 * 4 * labels, '\0');
    qToLittleEndian<quint32>(labels, table.data());
    qToLittleEndian<quint32>(textSize, table.data() + 4);
    table += QByteArray(textSize - 1, 'x') + '\0';
    const int begin = bytes.indexOf("<lbl>") + 5;
    const int end = bytes.indexOf("</lbl>");
    QByteArray size(4, '\0');
    qToLittleEndian<quint32>(quint32(table.size()), size.data());
    const QByteArray nameAndPadding = bytes.mid(begin + 4, 129 + 3);
    bytes.replace(begin, end - begin, size + nameAndPadding + table);
    const Layout layout = layoutOf(bytes);
    QVERIFY(layout.isRead());
    QCOMPARE(itemsOf(layout).size(), 1);
    const qint64 maxLabels = ((qint64(64) << 20) + 4 * qint64(bytes.size())) / (textSize - 1);
    QCOMPARE(qint64(itemsOf(layout).constFirst().valueSets.value(0).values.size()), maxLabels);
    QCOMPARE(layout.problems.size(), 1);
    QCOMPARE(layout.problems.constFirst().id, QString("too-much-text"));
    QCOMPARE(layout.problems.constFirst().severity, Severity::Warning);
}

void StatFileBadInputTest::aCatalogThatLeadsBackToItselfEnds()
{
    StatFile file(StatFile::sas7bdat);
    file.variable("SEX", READSTAT_TYPE_DOUBLE, "", "YESNO");
    const QByteArray dataSet = bytesOf(file);
    QByteArray bytes = catalog();
    // Each block of labels is a chain of links; this one leads to itself, in a file of many pages.
    constexpr int headerSize = 1024;
    constexpr int pageSize = 4096;
    constexpr int pageCountAt = 204;
    constexpr int pages = 4000;
    constexpr int linkAt = headerSize + 3 * pageSize + 16;
    QCOMPARE(int(qFromLittleEndian<quint32>(bytes.constData() + pageCountAt)), 4);
    qToLittleEndian<quint32>(pages, bytes.data() + pageCountAt);
    qToLittleEndian<quint32>(4, bytes.data() + linkAt);
    qToLittleEndian<quint16>(16, bytes.data() + linkAt + 4);
    bytes += QByteArray((pages - 4) * pageSize, '\0');
    // Many more blocks begin with separate links, which lead to that one.
    for (int page = 4; page < pages; ++page) {
        for (int entry = 0; entry < 19; ++entry) {
            constexpr int linkWithin = 100;
            const int place = 16 + entry * 212;
            char *index = bytes.data() + headerSize + page * pageSize + place;
            std::memcpy(index, "XLSR", 4);
            qToLittleEndian<quint32>(quint32(page + 1), index + 4);
            qToLittleEndian<quint16>(quint16(place + linkWithin), index + 8);
            index[50] = 'O';
            qToLittleEndian<quint32>(4, index + linkWithin);
            qToLittleEndian<quint16>(16, index + linkWithin + 4);
        }
    }
    const QTemporaryDir directory;
    QFile written(directory.filePath("catalog.sas7bcat"));
    QVERIFY(written.open(QIODevice::WriteOnly) && written.write(bytes) == bytes.size());
    written.close();
    const Layout layout = layoutOf(dataSet, { written.fileName() });
    QVERIFY(layout.isRead());
    QCOMPARE(layout.problems.size(), 1);
    QCOMPARE(layout.problems.constFirst().id, QString("catalog-not-read"));
    QVERIFY(layout.problems.constFirst().message.endsWith("its parts refer back to each other"));
}

void StatFileBadInputTest::aLabelThatReadStatCutsIsReported()
{
    StatFile file(StatFile::sav);
    file.variable("V", READSTAT_TYPE_DOUBLE, "The label");
    QByteArray bytes = bytesOf(file);
    // The size of the label is before it.
    const int place = bytes.indexOf("The label");
    constexpr int size = 1100;
    qToLittleEndian<quint32>(size, bytes.data() + place - 4);
    bytes.replace(place, 12, QByteArray(size, 'x'));
    const Layout layout = layoutOf(bytes);
    QCOMPARE(itemsOf(layout).value(0).labels.primary().size(), 1023);
    QCOMPARE(layout.problems.size(), 1);
    QCOMPARE(layout.problems.constFirst().id, QString("label-cut"));
    QCOMPARE(layout.problems.constFirst().path, QString("//V"));
}

void StatFileBadInputTest::memoryThatRunsOutIsRaised()
{
    QFETCH(QByteArray, bytes);
    const Layout whole = layoutOf(bytes);
    Layout last;
    const int failures = scarce::runShort([&] { last = layoutOf(bytes); });
    QVERIFY(failures > 3);
    QCOMPARE(last, whole);
}

void StatFileBadInputTest::filesAreReadOnSeveralThreads()
{
    constexpr int threads = 4;
    constexpr int rounds = 20;
    std::vector<std::thread> running;
    std::atomic<int> same(0);
    for (int i = 0; i < threads; ++i) {
        running.emplace_back([&same] {
            for (int round = 0; round < rounds; ++round) {
                for (const Sample &sample : samples) {
                    const QByteArray bytes = bytesOf(sample);
                    same += layoutOf(bytes) == layoutOf(bytes) && layoutOf(bytes).isRead() ? 1 : 0;
                }
            }
        });
    }
    for (std::thread &thread : running)
        thread.join();
    QCOMPARE(same.load(), threads * rounds * int(std::size(samples)));
}

QTEST_APPLESS_MAIN(StatFileBadInputTest)
#include "StatFileBadInputTest.moc"
