#include "support/MeasuredRun.h"
#include "support/NotesLine.h"

#include <QtTest>

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTextCodec>

/// Reads all dictionaries of the corpus with the command line, and compares the output with the fields that a scanner
/// of this test finds in the file.
class CSProTextCorpusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyFileIsRead_data();
    void everyFileIsRead();
    void everyFileWithAKnownErrorIsThere();

private:
    QTemporaryDir directory;
};

namespace
{

const QString corpus = QStringLiteral(VAN_CORPUS "/cspro-text");

constexpr qint64 memoryOfAByte = 40;

// Files whose reading ends in error 242, and the value set in which it ends: there a range without a label, which has
// further ranges on its line, precedes another value line.
const QMap<QString, QString> knownErrors = {
    { QStringLiteral("cspro-ex-rel-ex.dcf"), QStringLiteral("AGE_VS1") },
};

// One section: the index of its last line, and its lines, trimmed, without the empty ones.
struct Section {
    QString word;
    QStringList lines;
    int lastLine = 0;

    // The first line that contains the key anywhere has the value, if it has exactly one "=".
    QString value(const QString &key, const QString &otherwise = QString()) const
    {
        for (const QString &line : lines) {
            if (line.contains(key))
                return line.count('=') == 1 ? line.section('=', 1) : otherwise;
        }
        return otherwise;
    }

    int number(const QString &key, int otherwise) const
    {
        bool isNumber = false;
        const int number = value(key).toInt(&isNumber);
        return isNumber ? number : otherwise;
    }
};

// A text with or without a byte-order mark, in UTF-8 or, if it is not valid UTF-8, in the usual encoding of old files.
QString decoded(const QByteArray &bytes)
{
    QTextCodec::ConverterState state;
    QString text = QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.invalidChars > 0)
        text = QTextCodec::codecForName("windows-1252")->toUnicode(bytes);
    return text.remove('\r');
}

QVector<Section> sectionsOf(const QByteArray &bytes)
{
    QVector<Section> sections;
    const QStringList lines = decoded(bytes).split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        const QString &line = lines.at(i);
        if (line.startsWith('[') && line.trimmed().size() > 1) {
            sections.append({ line.mid(1).section(']', 0, 0).toUpper(), {}, i });
        } else if (!sections.isEmpty()) {
            if (!line.trimmed().isEmpty())
                sections.last().lines.append(line.trimmed());
            // The text after the last line break is a line only if it is not empty.
            if (i + 1 < lines.size() || !line.isEmpty())
                sections.last().lastLine = i;
        }
    }
    return sections;
}

// The facts about a dictionary that its sections state.
struct Expectation {
    QStringList groups;
    QStringList fields; // name, start, length, type and group of each field
};

QString describe(const QString &name, int start, int length, const QString &type, const QString &group)
{
    return QStringLiteral("%1 %2 %3 %4 %5").arg(name, QString::number(start), QString::number(length), type, group);
}

QString typeOf(const Section &item)
{
    if (item.value(QStringLiteral("DataType")).toUpper() == QLatin1String("ALPHA"))
        return QStringLiteral("STRING");
    const bool isWhole = item.number(QStringLiteral("Decimal"), 0) == 0;
    return isWhole && item.number(QStringLiteral("Len"), 0) <= 9 ? QStringLiteral("INTEGER") : QStringLiteral("REAL");
}

Expectation expectationOf(const QVector<Section> &sections)
{
    bool hasRecordTypes = true;
    for (const Section &section : sections) {
        if (section.word == QLatin1String("DICTIONARY"))
            hasRecordTypes = section.number(QStringLiteral("RecordTypeLen"), 1) > 0;
    }
    Expectation expected;
    const QString common = QStringLiteral("Common");
    QString record = common;
    for (const Section &section : sections) {
        if (section.word == QLatin1String("RECORD")) {
            record = section.value(QStringLiteral("Name"));
            const QString type = section.value(QStringLiteral("RecordTypeValue"));
            expected.groups.append(record + '=' + type.mid(1, std::max(int(type.size()) - 2, 0)));
        } else if (section.word == QLatin1String("ITEM")) {
            const QString name = section.value(QStringLiteral("Name"));
            const int start = section.number(QStringLiteral("Start"), 1);
            const int length = section.number(QStringLiteral("Len"), 0);
            const int occurrences = section.number(QStringLiteral("Occurrences"), 1);
            for (int i = 1; i <= occurrences; ++i)
                expected.fields.append(describe(occurrences == 1 ? name : name + '_' + QChar(i),
                                                start + (i - 1) * length, length, typeOf(section),
                                                hasRecordTypes ? record : QString()));
        } else if (section.word != QLatin1String("DICTIONARY") && section.word != QLatin1String("VALUESET")) {
            record = common;
        }
    }
    return expected;
}

QStringList groupsOf(const QJsonObject &layout)
{
    QStringList groups;
    for (const QJsonValue group : layout.value("importer").toObject().value("groups").toArray())
        groups.append(group.toObject().value("name").toString());
    return groups;
}

QStringList fieldsOf(const QJsonObject &layout)
{
    QStringList fields;
    for (const QJsonValue value : layout.value("fields").toArray()) {
        const QJsonObject field = value.toObject();
        fields.append(describe(field.value("name").toString(), field.value("start").toInt(-1),
                               field.value("length").toInt(-1), field.value("type").toString(),
                               field.value("group").toString()));
    }
    return fields;
}

} // namespace

void CSProTextCorpusTest::initTestCase()
{
    if (!QFileInfo(corpus).isDir())
        QSKIP("the corpus is not available");
    QVERIFY(directory.isValid());
    QVERIFY(QFileInfo(QStringLiteral(VAN_TOOL)).isExecutable());
    qputenv("LC_ALL", "C.UTF-8");
    qunsetenv("QT_LOGGING_RULES");
}

void CSProTextCorpusTest::everyFileIsRead_data()
{
    QTest::addColumn<QString>("fileName");
    const QFileInfoList files = QDir(corpus).entryInfoList(QDir::Files);
    QVERIFY(!files.isEmpty());
    for (const QFileInfo &file : files)
        QTest::newRow(qPrintable(file.fileName())) << file.filePath();
}

void CSProTextCorpusTest::everyFileIsRead()
{
    QFETCH(QString, fileName);

    const QByteArray bytes = contentOf(fileName);
    QVERIFY(!bytes.isEmpty());
    const MeasuredRun run = showAsJson(fileName, directory);
    QVERIFY2(run.isInTime, "took too long");
    QVERIFY2(WIFEXITED(run.status), run.err.constData());
    if (measuresMemory) {
        const qint64 limit = memoryOfAnyRun + memoryOfAByte * bytes.size();
        QVERIFY2(run.peakMemory <= limit, qPrintable(QString::number(run.peakMemory)));
    }

    const QVector<Section> sections = sectionsOf(bytes);
    const QJsonObject layout = QJsonDocument::fromJson(run.out).object();
    const QString knownError = knownErrors.value(QFileInfo(fileName).fileName());
    if (!knownError.isEmpty()) {
        const auto broken = std::find_if(sections.cbegin(), sections.cend(), [&knownError](const Section &section) {
            return section.word == QLatin1String("VALUESET") && section.value(QStringLiteral("Name")) == knownError;
        });
        QVERIFY(broken != sections.cend());
        QCOMPARE(WEXITSTATUS(run.status), 2);
        QCOMPARE(layout.value("error").toObject().value("code").toInt(), 242);
        QCOMPARE(layout.value("error").toObject().value("line").toInt(), broken->lastLine);
        return;
    }
    QCOMPARE(withoutNotesLine(run.err), QByteArray());
    QCOMPARE(WEXITSTATUS(run.status), 0);
    const Expectation expected = expectationOf(sections);
    QVERIFY(!expected.fields.isEmpty());
    QCOMPARE(groupsOf(layout), expected.groups);
    QCOMPARE(fieldsOf(layout).size(), expected.fields.size());
    QCOMPARE(fieldsOf(layout), expected.fields);
}

void CSProTextCorpusTest::everyFileWithAKnownErrorIsThere()
{
    for (const QString &name : knownErrors.keys())
        QVERIFY2(QFileInfo::exists(corpus + '/' + name), qPrintable(name));
}

QTEST_GUILESS_MAIN(CSProTextCorpusTest)
#include "CSProTextCorpusTest.moc"
