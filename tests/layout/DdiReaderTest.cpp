#include "read/DdiMarkup_p.h"
#include "read/DdiXml_p.h"
#include "read/Reader.h"

#include <QBuffer>
#include <QTemporaryFile>
#include <QTest>

using namespace vanlayout;

namespace
{

Layout layoutOf(QByteArray document)
{
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    return readLayout(buffer, QStringLiteral("name"));
}

// A document with these variables and one file.
QByteArray withVariables(const QByteArray &variables, const QByteArray &file = "<fileDscr ID=\"F1\"/>")
{
    return "<codeBook version=\"2.5\">" + file + "<dataDscr>" + variables + "</dataDscr></codeBook>";
}

Layout variablesOf(const QByteArray &variables)
{
    return layoutOf(withVariables(variables));
}

const QVector<Item> &itemsOf(const Layout &layout)
{
    static const QVector<Item> none;
    return layout.levels.isEmpty() || layout.levels.constFirst().records.isEmpty()
        ? none
        : layout.levels.constFirst().records.constFirst().items;
}

Item itemOf(const QByteArray &content, const QByteArray &attributes = QByteArray())
{
    return itemsOf(variablesOf("<var ID=\"V1\" name=\"X\" " + attributes + ">" + content + "</var>")).value(0);
}

QStringList textsOf(const Labels &labels)
{
    QStringList texts;
    for (const Label &label : labels.parts)
        texts.append(label.language + "=" + label.text);
    return texts;
}

QStringList rangesIn(const QVector<Range> &ranges)
{
    QStringList texts;
    for (const Range &range : ranges)
        texts.append(range.to.isEmpty() ? range.from : range.from + ".." + range.to);
    return texts;
}

// Each value as `codes=label`, with the word of a special one.
QStringList valuesOf(const Item &item, int set = 0)
{
    QStringList texts;
    for (const Value &value : item.valueSets.value(set).values) {
        const QString special = wordOf(value.special);
        texts.append(rangesIn(value.ranges).join(' ') + "=" + value.labels.primary()
                     + (special.isEmpty() ? special : " " + special));
    }
    return texts;
}

QStringList extrasOf(const Layout &layout)
{
    QStringList texts;
    for (const Extra &extra : layout.extras)
        texts.append(extra.path + " " + extra.key + "=" + extra.value);
    return texts;
}

QStringList idsOf(const QVector<Problem> &problems)
{
    QStringList ids;
    for (const Problem &problem : problems)
        ids.append(wordOf(problem.severity) + " " + problem.id);
    return ids;
}

QStringList namesOf(const QVector<Item> &items)
{
    QStringList names;
    for (const Item &item : items)
        names.append(item.name);
    return names;
}

// Each record as `name: items`.
QStringList recordsOf(const Layout &layout)
{
    QStringList texts;
    for (const Record &record : layout.levels.value(0).records)
        texts.append(record.name + ": " + namesOf(record.items).join(' '));
    return texts;
}

QByteArray nested(int depth)
{
    return QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth);
}

} // namespace

/// Reads DDI Codebook documents, as archives and other programs write them.
class DdiReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void rootIsFound_data();
    void rootIsFound();
    void versionIsThatOfTheAttributeOrTheNamespace_data();
    void versionIsThatOfTheAttributeOrTheNamespace();
    void textsAreDecoded_data();
    void textsAreDecoded();
    void invalidBytesBecomeReplacementCharacters();
    void blocksAreSplitAnywhere();
    void documentIsRefused_data();
    void documentIsRefused();
    void documentEndsWithItsRoot();
    void elementsMayBeDeep();
    void commentsAndSectionsAreNoMarkup_data();
    void commentsAndSectionsAreNoMarkup();
    void entitiesOfAnotherFileStay();
    void documentTypeDefinitionIsNotRead();
    void predefinedEntitiesAreCharacters();
    void failureOfTheDeviceIsReported();
    void indentationIsNoText_data();
    void indentationIsNoText();
    void languageIsThatOfTheNearestElement();
    void languagesAreThoseOfTheLabels();
    void titlesAreTheLabel();
    void titleOfTheDocumentIsNotKeptTwice();
    void columnsAreThoseOfTheLocation_data();
    void columnsAreThoseOfTheLocation();
    void furtherLocationsAreKept();
    void typeIsThatOfTheFormat_data();
    void typeIsThatOfTheFormat();
    void decimalsAreImplied_data();
    void decimalsAreImplied();
    void measureIsThatOfTheNature_data();
    void measureIsThatOfTheNature();
    void categoriesAreValues();
    void missingCategoriesAreSpecial_data();
    void missingCategoriesAreSpecial();
    void invalidRangesAreMissing_data();
    void invalidRangesAreMissing();
    void validRangesAreKeptUnlessTheyAreValues_data();
    void validRangesAreKeptUnlessTheyAreValues();
    void textsOfTheVariableAreItsNote();
    void questionsAndConceptsAreExtras();
    void markupIsPartOfItsText();
    void figuresOfTheDataAreNotRead();
    void unknownAttributesAreExtras();
    void extrasOfACategoryNameItsValue();
    void weightIsTheFirstWeight();
    void recordGroupsAreRecords();
    void recordTypeIsThatOfItsVariable();
    void keyOfAllRecordsIsAnId();
    void variableOfSeveralRecordsIsAnItemOfEach();
    void filesAreRecords();
    void linesOfACaseAreRecords();
    void unknownFilesAndTypesAreReported();
    void columnsOfTheRecordTypeMustAgree();
    void repetitionOfUnlikeVariablesIsKept_data();
    void repetitionOfUnlikeVariablesIsKept();
    void documentWithoutVariablesIsALayout();
    void copiesInRecordsAreBounded();
    void longKeysAreCut();
    void manyPartsTakeLinearTime_data();
    void manyPartsTakeLinearTime();
};

void DdiReaderTest::rootIsFound_data()
{
    QTest::addColumn<QByteArray>("document");
    const QByteArray variable = "<dataDscr><var name=\"X\"/></dataDscr>";
    QTest::newRow("no declaration") << "<codeBook>" + variable + "</codeBook>";
    QTest::newRow("declaration") << "<?xml version=\"1.0\"?>\n<codeBook>" + variable + "</codeBook>";
    QTest::newRow("mark") << "\xEF\xBB\xBF<?xml version=\"1.0\"?><codeBook>" + variable + "</codeBook>";
    QTest::newRow("white space") << "\r\n <codeBook>" + variable + "</codeBook>";
    QTest::newRow("old namespace") << "<codeBook xmlns=\"http://www.icpsr.umich.edu/DDI\">" + variable + "</codeBook>";
    QTest::newRow("new namespace") << "<codeBook xmlns=\"ddi:codebook:2_5\">" + variable + "</codeBook>";
    QTest::newRow("prefix") << QByteArray("<d:codeBook xmlns:d=\"ddi:codebook:2_5\"><d:dataDscr><d:var name=\"X\"/>"
                                          "</d:dataDscr></d:codeBook>");
    QTest::newRow("document type") << "<!DOCTYPE codeBook SYSTEM \"http://localhost/none.dtd\"><codeBook>" + variable
            + "</codeBook>";
    QTest::newRow("comment") << "<!-- <html> --><codeBook>" + variable + "</codeBook>";
    QTest::newRow("long comment") << "<?xml version=\"1.0\"?><!--" + QByteArray(9000, 'x') + "--><codeBook>" + variable
            + "</codeBook>";
}

void DdiReaderTest::rootIsFound()
{
    QFETCH(QByteArray, document);
    const Layout layout = layoutOf(document);
    QVERIFY(layout.isRead());
    QCOMPARE(layout.format, Format::Ddi);
    QCOMPARE(namesOf(itemsOf(layout)), QStringList({ "X" }));
}

void DdiReaderTest::versionIsThatOfTheAttributeOrTheNamespace_data()
{
    QTest::addColumn<QByteArray>("root");
    QTest::addColumn<QString>("version");
    QTest::newRow("attribute") << QByteArray("<codeBook version=\"1.2.2\" xmlns=\"ddi:codebook:2_5\">") << "1.2.2";
    QTest::newRow("namespace") << QByteArray("<codeBook xmlns=\"ddi:codebook:2_5\">") << "2.5";
    QTest::newRow("prefix") << QByteArray("<codeBook xmlns:d=\"ddi:codebook:2_1\">") << "2.1";
    QTest::newRow("none") << QByteArray("<codeBook xmlns=\"http://www.icpsr.umich.edu/DDI\">") << "";
}

void DdiReaderTest::versionIsThatOfTheAttributeOrTheNamespace()
{
    QFETCH(QByteArray, root);
    QFETCH(QString, version);
    QCOMPARE(layoutOf(root + "</codeBook>").formatVersion, version);
}

void DdiReaderTest::textsAreDecoded_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QString>("encoding");
    const QString text = QString::fromUtf8("<codeBook><dataDscr><var name=\"X\"><labl>\xC3\x89t\xC3\xA9</labl></var>"
                                           "</dataDscr></codeBook>");
    const auto declared
        = [](const char *name) { return "<?xml version=\"1.0\" encoding=\"" + QByteArray(name) + "\"?>"; };
    const auto utf16 = [&](bool isLittle) {
        QByteArray bytes;
        for (const QChar unit : "<?xml version='1.0' encoding='UTF-16'?>" + text) {
            const char low = char(unit.unicode() & 0xFFU);
            const char high = char(unit.unicode() >> 8U);
            bytes += isLittle ? low : high;
            bytes += isLittle ? high : low;
        }
        return bytes;
    };
    QTest::newRow("none") << text.toUtf8() << "utf-8";
    QTest::newRow("UTF-8") << declared("UTF-8") + text.toUtf8() << "utf-8";
    QTest::newRow("ISO-8859-1") << declared("ISO-8859-1") + text.toLatin1() << "iso-8859-1";
    QTest::newRow("windows-1252") << declared("windows-1252") + text.toLatin1() << "windows-1252";
    QTest::newRow("mark before another name") << "\xEF\xBB\xBF" + declared("ISO-8859-1") + text.toUtf8() << "utf-8";
    QTest::newRow("UTF-16 LE, mark") << "\xFF\xFE" + utf16(true) << "utf-16le";
    QTest::newRow("UTF-16 BE, mark") << "\xFE\xFF" + utf16(false) << "utf-16be";
    QTest::newRow("UTF-16 LE") << utf16(true) << "utf-16le";
    QTest::newRow("name of UTF-16 in UTF-8") << declared("utf-16") + text.toUtf8() << "utf-8";
    QByteArray wide("\xFF\xFE\0\0", 4);
    for (const QChar unit : text) {
        wide += char(unit.unicode() & 0xFFU);
        wide += QByteArray(3, '\0');
    }
    QTest::newRow("UTF-32 LE, mark") << wide << "utf-32le";
    QTest::newRow("UTF-16 BE") << utf16(false) << "utf-16be";
}

void DdiReaderTest::textsAreDecoded()
{
    QFETCH(QByteArray, document);
    QFETCH(QString, encoding);
    const Layout layout = layoutOf(document);
    QCOMPARE(idsOf(layout.problems), QStringList());
    QCOMPARE(layout.encoding, encoding);
    QCOMPARE(itemsOf(layout).value(0).labels.primary(), QString::fromUtf8("\xC3\x89t\xC3\xA9"));
}

void DdiReaderTest::invalidBytesBecomeReplacementCharacters()
{
    const Layout layout = variablesOf("\n<var name='X'><labl>a\xFF\xE2\x82z</labl>\n</var>");
    QCOMPARE(itemsOf(layout).value(0).labels.primary(), QString("a\uFFFD\uFFFDz"));
    QCOMPARE(idsOf(layout.problems), QStringList({ "warning bad-bytes" }));
    QCOMPARE(layout.problems.at(0).line, 2);
    QCOMPARE(idsOf(variablesOf("<var name='\xEF\xBF\xBD'/>").problems), QStringList());
    const QByteArray japanese
        = "<?xml version=\"1.0\" encoding=\"Shift_JIS\"?>\n<codeBook>\n<dataDscr><var name='\xFF'/>";
    QCOMPARE(layoutOf(japanese + "</dataDscr></codeBook>").problems.value(0).line, 3);
}

// Characters of several bytes are at each place around the end of a block.
void DdiReaderTest::blocksAreSplitAnywhere()
{
    constexpr int block = 1 << 18;
    const QByteArray begin = "<codeBook><dataDscr><var name=\"X\"><labl>";
    const QByteArray end = "</labl></var></dataDscr></codeBook>";
    for (int shift = 0; shift < 8; ++shift) {
        const QByteArray text = QByteArray(block - int(begin.size()) - shift, 'x') + "\xF0\x9F\x8F\xA0\xC3\xA9z";
        const Layout layout = layoutOf(begin + text + end);
        QCOMPARE(itemsOf(layout).value(0).labels.primary(), QString::fromUtf8(text));
    }
}

void DdiReaderTest::documentIsRefused_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QString>("id");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *name, const QByteArray &document, const char *id, int line, const char *message) {
        QTest::newRow(name) << document << id << line << message;
    };
    row("another root", "<?xml version=\"1.0\"?>\n<note/>", "unknown-format", 2, "with the root \"note\"");
    row("root of another DDI", "<?xml version=\"1.0\"?>\n<DDIInstance/>", "unknown-format", 2, "with the root");
    row("root without a declaration", "<note/>", "unknown-format", 1, "with the root \"note\"");
    row("root in small letters", "\n<codebook/>", "unknown-format", 2, "with the root \"codebook\"");
    row("no root", "<?xml version=\"1.0\"?>", "unknown-format", 1,
        "the file begins like XML, but is not well-formed XML: ");
    row("default of an attribute", "<!DOCTYPE codeBook [\n<!ATTLIST var name CDATA \"X\">]><codeBook/>", "unsafe-xml",
        2, "declares attributes, whose defaults are not expanded");
    row("language", "<codeBook>\n<labl xml:lang='" + QByteArray(101, 'x') + "'/></codeBook>", "unsafe-xml", 2,
        "has a language of more than 100 characters");
    row("end in an element", "<codeBook>\n<dataDscr>", "not-well-formed", 2, "is not well-formed XML: ");
    row("wrong end", "<codeBook>\n</dataDscr>", "not-well-formed", 2, "is not well-formed XML: ");
    row("control character", "<codeBook>\x01</codeBook>", "not-well-formed", 1, "is not well-formed XML: ");
    row("unknown entity", "<codeBook>&x;</codeBook>", "not-well-formed", 1, "is not well-formed XML: ");
    row("encoding", "<?xml version=\"1.0\" encoding=\"x-none\"?><codeBook/>", "unknown-encoding", 1,
        "has the unknown encoding \"x-none\"");
    row("encoding of two lines", "<?xml version=\"1.0\" encoding=\"x\ny\"?><codeBook/>", "unknown-encoding", 1,
        "has the unknown encoding \"x y\"");
    row("entity", "<!DOCTYPE codeBook [\n<!ENTITY a \"text\">]><codeBook>&a;</codeBook>", "unsafe-xml", 2,
        "declares entities, which are not expanded");
    row("entity of a file", "<!DOCTYPE codeBook [<!ENTITY a SYSTEM \"file:///etc/passwd\">]><codeBook>&a;</codeBook>",
        "unsafe-xml", 1, "declares entities");
    row("parameter entity", "<!DOCTYPE codeBook [<!ENTITY % a \"<!ELEMENT b ANY>\"> %a;]><codeBook/>", "unsafe-xml", 1,
        "declares entities");
    row("entity after a quoted comment", "<!DOCTYPE codeBook SYSTEM \"<!--\" [<!ENTITY a \"b\">]><codeBook/>",
        "unsafe-xml", 1, "declares entities");
    row("depth", "<codeBook>" + nested(256) + "</codeBook>", "too-deep", 1,
        "has more than 256 elements within each other");
    QByteArray attributes;
    for (int i = 0; i <= 1000; ++i)
        attributes += " a" + QByteArray::number(i) + " = '>'";
    row("attributes", "<codeBook" + attributes + "/>", "unsafe-xml", 1,
        "has an element with more than 1000 attributes");
}

void DdiReaderTest::documentIsRefused()
{
    QFETCH(QByteArray, document);
    QFETCH(QString, id);
    QFETCH(int, line);
    QFETCH(QString, message);
    const Layout layout = layoutOf(document);
    QVERIFY(!layout.isRead());
    QCOMPARE(layout.problems.size(), 1);
    QCOMPARE(layout.problems.at(0).id, id);
    QCOMPARE(layout.problems.at(0).line, line);
    QVERIFY2(layout.problems.at(0).message.contains(message), qPrintable(layout.problems.at(0).message));
}

void DdiReaderTest::documentEndsWithItsRoot()
{
    QVERIFY(layoutOf("<codeBook/>\ntext <a>").isRead());
}

void DdiReaderTest::elementsMayBeDeep()
{
    QVERIFY(layoutOf("<codeBook>" + nested(255) + "</codeBook>").isRead());
}

void DdiReaderTest::commentsAndSectionsAreNoMarkup_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("comment") << QByteArray("<!-- <!ENTITY a 'b'> - -x -->");
    QTest::newRow("section") << QByteArray("<![CDATA[ <!ENTITY a 'b'> ]] ]> ]]]>");
    QTest::newRow("instruction") << QByteArray("<?x <!ENTITY a 'b'> ? > ?>");
    QTest::newRow("attribute") << QByteArray("<a b='&lt;!ENTITY' c=\"'\"/>");
}

void DdiReaderTest::commentsAndSectionsAreNoMarkup()
{
    QFETCH(QByteArray, text);
    QVERIFY(layoutOf("<codeBook>" + text + "</codeBook>").isRead());
    // The scan is at the beginning of the text again, whatever the sizes of the blocks.
    ddi::MarkupScan scan;
    for (const char byte : text)
        QVERIFY(scan.accepts(QString(QLatin1Char(byte))));
    QVERIFY(!scan.accepts("<!ENTITY"));
}

void DdiReaderTest::entitiesOfAnotherFileStay()
{
    const Layout layout = layoutOf("<!DOCTYPE codeBook SYSTEM \"http://localhost/none.dtd\">"
                                   + withVariables("<var name=\"X\"><labl>&Eacute;t&eacute;</labl></var>"));
    QCOMPARE(itemsOf(layout).value(0).labels.primary(), QString("&Eacute;t&eacute;"));
    QCOMPARE(idsOf(layout.problems), QStringList({ "warning unresolved-entity" }));
    QVERIFY(layout.problems.at(0).message.contains("\"&Eacute;\""));
}

// The document type definition exists, and declares the entity.
void DdiReaderTest::documentTypeDefinitionIsNotRead()
{
    QTemporaryFile definition;
    QVERIFY(definition.open());
    definition.write("<!ENTITY name \"secret\"><!ELEMENT codeBook ANY>");
    definition.close();
    const QByteArray path = definition.fileName().toUtf8();
    for (const QByteArray &address : { path, "file://" + path }) {
        for (const QByteArray &declaration : { "SYSTEM \"" + address + "\"", "PUBLIC \"DDI\" \"" + address + "\"" }) {
            const Layout layout = layoutOf("<!DOCTYPE codeBook " + declaration + ">"
                                           + withVariables("<var name=\"X\"><labl>&name;</labl></var>"));
            QCOMPARE(itemsOf(layout).value(0).labels.primary(), QString("&name;"));
        }
    }
}

void DdiReaderTest::predefinedEntitiesAreCharacters()
{
    QCOMPARE(itemOf("<labl>&lt;&amp;&gt;&#233;&#x20AC;</labl>").labels.primary(),
             QString::fromUtf8("<&>\xC3\xA9\xE2\x82\xAC"));
}

void DdiReaderTest::failureOfTheDeviceIsReported()
{
    class FailingBuffer : public QBuffer
    {
    public:
        explicit FailingBuffer(const QByteArray &bytes)
        {
            setData(bytes);
            open(QIODevice::ReadOnly | QIODevice::Unbuffered);
        }

    protected:
        qint64 readData(char *data, qint64 size) override
        {
            constexpr int lastGoodByte = 200'000;
            setErrorString("the disk is broken");
            return pos() > lastGoodByte ? -1 : QBuffer::readData(data, size);
        }
    };
    FailingBuffer device(withVariables(QByteArray(400'000, ' ')));
    const Layout layout = readLayout(device, "name");
    QCOMPARE(idsOf(layout.problems), QStringList({ "error cannot-read" }));
    QCOMPARE(layout.problems.at(0).message, QString("cannot be read: the disk is broken"));
}

void DdiReaderTest::indentationIsNoText_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("label");
    QTest::newRow("line breaks") << QByteArray("\n    Sex of the\n    person\n  ") << "Sex of the\n    person";
    QTest::newRow("carriage returns") << QByteArray("\r\n Sex\r\n") << "Sex";
    QTest::newRow("blanks") << QByteArray("  Sex ") << "  Sex ";
    QTest::newRow("only blanks") << QByteArray(" ") << " ";
    QTest::newRow("only lines") << QByteArray("\n  \n") << "";
}

void DdiReaderTest::indentationIsNoText()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, label);
    QCOMPARE(itemOf("<labl>" + text + "</labl>").labels.primary(), label);
}

void DdiReaderTest::languageIsThatOfTheNearestElement()
{
    const Layout layout
        = layoutOf("<codeBook xml:lang=\"en\"><dataDscr xml:lang=\"fr\"><var name=\"X\"><labl>Sexe</labl>"
                   "<labl xml:lang=\"pt-br\">Sexo</labl></var></dataDscr><stdyDscr><citation><titlStmt>"
                   "<titl>Study</titl></titlStmt></citation></stdyDscr></codeBook>");
    QCOMPARE(textsOf(itemsOf(layout).value(0).labels), QStringList({ "fr=Sexe", "pt-br=Sexo" }));
    QCOMPARE(textsOf(layout.labels), QStringList({ "en=Study" }));
    const Item old = itemOf("<labl xml-lang='fr'>Sexe</labl><labl xml-lang='fr' xml:lang='en'>Sex</labl>");
    QCOMPARE(textsOf(old.labels), QStringList({ "fr=Sexe", "en=Sex" }));
}

void DdiReaderTest::languagesAreThoseOfTheLabels()
{
    const Layout layout
        = variablesOf("<var name=\"X\"><labl>X</labl><labl xml:lang=\"b\">B</labl><catgry><catValu>1</catValu>"
                      "<labl xml:lang=\"c\">C</labl><labl xml:lang=\"b\">B</labl></catgry></var>");
    QStringList names;
    for (const Language &language : layout.languages)
        names.append(language.name + language.label);
    QCOMPARE(names, QStringList({ "b", "c" }));
}

void DdiReaderTest::titlesAreTheLabel()
{
    const auto labelsOf = [](const QByteArray &titles) {
        return textsOf(
            layoutOf("<codeBook><stdyDscr><citation><titlStmt>" + titles
                     + "</titlStmt></citation></stdyDscr><fileDscr ID=\"F\"><fileTxt><fileName>DICT</fileName>"
                       "</fileTxt></fileDscr></codeBook>")
                .labels);
    };
    QCOMPARE(labelsOf("<titl xml:lang=\"en\">Census</titl><parTitl xml:lang=\"fr\">Recensement</parTitl>"),
             QStringList({ "en=Census", "fr=Recensement" }));
    QCOMPARE(labelsOf("<titl>DICT</titl>"), QStringList()); // the name in place of a title
    QCOMPARE(labelsOf("<titl/>"), QStringList());
}

void DdiReaderTest::titleOfTheDocumentIsNotKeptTwice()
{
    const QByteArray titled = "<citation><titlStmt><titl>Census</titl></titlStmt></citation>";
    QCOMPARE(
        extrasOf(layoutOf("<codeBook><docDscr>" + titled + "</docDscr><stdyDscr>" + titled + "</stdyDscr></codeBook>")),
        QStringList());
    QCOMPARE(extrasOf(layoutOf("<codeBook><docDscr>" + titled + "</docDscr></codeBook>")),
             QStringList({ " docDscr/citation/titlStmt/titl=Census" }));
}

void DdiReaderTest::columnsAreThoseOfTheLocation_data()
{
    QTest::addColumn<QByteArray>("location");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("length");
    QTest::addColumn<QStringList>("problems");
    const QStringList none;
    QTest::newRow("all") << QByteArray("StartPos='3' EndPos='6' width='4'") << 3 << 4 << none;
    QTest::newRow("no width") << QByteArray("StartPos='3' EndPos='6'") << 3 << 4 << none;
    QTest::newRow("no end") << QByteArray("StartPos='3' width='4'") << 3 << 4 << none;
    QTest::newRow("leading zeros") << QByteArray("StartPos='003' width='04'") << 3 << 4 << none;
    QTest::newRow("no columns") << QByteArray("fileid='F1'") << 0 << 0 << none;
    QTest::newRow("only a width") << QByteArray("width='4'") << 0 << 4 << none;
    QTest::newRow("width of its own") << QByteArray("StartPos='3' EndPos='7' width='4'") << 3 << 4
                                      << QStringList({ "warning columns-differ" });
    QTest::newRow("only a start") << QByteArray("StartPos='3'") << 3 << 0
                                  << QStringList({ "warning item-without-length" });
    QTest::newRow("end before the start")
        << QByteArray("StartPos='3' EndPos='2'") << 3 << 0 << QStringList({ "warning item-without-length" });
    QTest::newRow("too large") << QByteArray("StartPos='3000000000' width='4'") << 0 << 4 << none;
    QTest::newRow("no number") << QByteArray("StartPos='A' width='-4'") << 0 << 0 << none;
}

void DdiReaderTest::columnsAreThoseOfTheLocation()
{
    QFETCH(QByteArray, location);
    QFETCH(int, start);
    QFETCH(int, length);
    QFETCH(QStringList, problems);
    const Layout layout = variablesOf("<var name=\"X\"><location " + location + "/></var>");
    QCOMPARE(itemsOf(layout).value(0).start, start);
    QCOMPARE(itemsOf(layout).value(0).length, length);
    QCOMPARE(idsOf(layout.problems), problems);
    for (const Problem &problem : layout.problems)
        QCOMPARE(problem.path, QString("//X"));
}

void DdiReaderTest::furtherLocationsAreKept()
{
    const QByteArray second = "<location StartPos='3' width='2'/><location StartPos='9' EndPos='10'/>";
    const Layout layout = variablesOf("<var name=\"X\">" + second + second + "</var>");
    QCOMPARE(itemsOf(layout).value(0).start, 3);
    QCOMPARE(extrasOf(layout), QStringList({ "//X location=StartPos 9, width 2", "//X location=StartPos 9, width 2" }));
    const QByteArray lines = "<var name='X'><location StartPos='3' width='2' RecSegNo='1'/>"
                             "<location StartPos='9' width='2' RecSegNo='2'/></var>";
    QCOMPARE(extrasOf(variablesOf(lines)), QStringList());
}

void DdiReaderTest::typeIsThatOfTheFormat_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("type");
    QTest::newRow("numeric") << QByteArray("<varFormat type='numeric'/>") << "numeric";
    QTest::newRow("character") << QByteArray("<varFormat type='character'/>") << "alpha";
    QTest::newRow("no type") << QByteArray("<varFormat/>") << "numeric";
    QTest::newRow("none") << QByteArray() << "numeric";
    const QByteArray code = "<catgry><catValu>A</catValu></catgry>";
    QTest::newRow("none, texts") << code << "alpha";
    QTest::newRow("numeric, texts") << code + "<varFormat type='numeric'/>"
                                    << "numeric";
    QTest::newRow("none, missing text") << QByteArray("<catgry missing='Y'><catValu>.</catValu></catgry>") << "numeric";
    QTest::newRow("none, blank") << QByteArray("<catgry><catValu/></catgry><catgry><catValu>1</catValu></catgry>")
                                 << "numeric";
    QTest::newRow("none, numbers") << QByteArray("<catgry><catValu>-1.5</catValu></catgry>") << "numeric";
}

void DdiReaderTest::typeIsThatOfTheFormat()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, type);
    QCOMPARE(itemOf(content).type, type);
}

void DdiReaderTest::decimalsAreImplied_data()
{
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<bool>("hasMark");
    QTest::addColumn<bool>("hasZeros");
    const QByteArray numeric = "<varFormat type='numeric'/>";
    QTest::newRow("dcml") << QByteArray("dcml='2'") << numeric << 2 << false << false;
    QTest::newRow("none") << QByteArray() << numeric << 0 << false << false;
    QTest::newRow("zero") << QByteArray("dcml='0'") << numeric << 0 << false << false;
    QTest::newRow("negative") << QByteArray("dcml='-1'") << numeric << 0 << false << false;
    QTest::newRow("text") << QByteArray("dcml='2'") << QByteArray("<varFormat type='character'/>") << 0 << false
                          << false;
    QTest::newRow("written mark") << QByteArray("dcml='2'")
                                  << QByteArray("<varFormat>2 decimals, decimal mark written in the data</varFormat>")
                                  << 2 << true << false;
    QTest::newRow("written mark, for extracts")
        << QByteArray("dcml='0'")
        << QByteArray("<varFormat>1 decimal, decimal mark written in the data; padded with zeros</varFormat>") << 1
        << true << true;
    QTest::newRow("zeros") << QByteArray("dcml='0'") << QByteArray("<varFormat>padded with zeros</varFormat>") << 0
                           << false << true;
}

void DdiReaderTest::decimalsAreImplied()
{
    QFETCH(QByteArray, attributes);
    QFETCH(QByteArray, format);
    QFETCH(int, decimals);
    QFETCH(bool, hasMark);
    QFETCH(bool, hasZeros);
    const Item item = itemOf(format, attributes);
    QCOMPARE(item.decimals, decimals);
    QCOMPARE(item.decimalMark, hasMark);
    QCOMPARE(item.zeroFill, hasZeros);
}

void DdiReaderTest::measureIsThatOfTheNature_data()
{
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<QString>("measure");
    QTest::newRow("none") << QByteArray() << "";
    QTest::newRow("discrete") << QByteArray("intrvl='discrete'") << "";
    QTest::newRow("contin") << QByteArray("intrvl='contin'") << "scale";
    QTest::newRow("nominal") << QByteArray("intrvl='discrete' nature='nominal'") << "nominal";
    QTest::newRow("ordinal") << QByteArray("nature='ordinal'") << "ordinal";
    QTest::newRow("interval") << QByteArray("nature='interval'") << "scale";
    QTest::newRow("ratio") << QByteArray("nature='ratio'") << "scale";
    QTest::newRow("percent") << QByteArray("nature='percent'") << "";
}

void DdiReaderTest::measureIsThatOfTheNature()
{
    QFETCH(QByteArray, attributes);
    QFETCH(QString, measure);
    QCOMPARE(wordOf(itemOf(QByteArray(), attributes).measure), measure);
}

void DdiReaderTest::categoriesAreValues()
{
    const Item item
        = itemOf("<catgry><catValu>01</catValu><labl>One</labl><txt>First</txt><txt>Second</txt></catgry>"
                 "<catgry><catValu> 2</catValu></catgry><catgry><labl>No code</labl><txt>A note</txt></catgry>");
    QCOMPARE(valuesOf(item), QStringList({ "01=One", " 2=", "=No code" }));
    QCOMPARE(item.valueSets.at(0).values.at(0).note, QString("First\nSecond"));
    QCOMPARE(item.valueSets.at(0).values.at(2).note, QString("A note"));
    QVERIFY(item.valueSets.at(0).name.isEmpty());
    QVERIFY(itemOf(QByteArray()).valueSets.isEmpty());
}

void DdiReaderTest::missingCategoriesAreSpecial_data()
{
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<QString>("special");
    QTest::addColumn<QStringList>("extras");
    const QStringList none;
    QTest::newRow("no") << QByteArray("missing='N'") << "" << none;
    QTest::newRow("yes") << QByteArray("missing='Y'") << "missing" << none;
    QTest::newRow("unknown kind") << QByteArray("missing='Y' missType='inapplicable'") << "missing"
                                  << QStringList({ "//X//#1 catgry@missType=inapplicable" });
    QTest::newRow("missing") << QByteArray("missing='Y' missType='missing'") << "missing" << none;
    QTest::newRow("not applicable") << QByteArray("missing='Y' missType='not applicable'") << "notApplicable" << none;
    QTest::newRow("refused") << QByteArray("missing='Y' missType='refused'") << "refused" << none;
    QTest::newRow("default") << QByteArray("missing='Y' missType='default'") << "default" << none;
    QTest::newRow("user-missing") << QByteArray("missing='Y' missType='user-missing'") << "" << none;
    QTest::newRow("extended missing") << QByteArray("missing='Y' missType='extended missing'") << "" << none;
}

void DdiReaderTest::missingCategoriesAreSpecial()
{
    QFETCH(QByteArray, attributes);
    QFETCH(QString, special);
    QFETCH(QStringList, extras);
    const Layout layout = variablesOf("<var name=\"X\"><catgry " + attributes
                                      + "><catValu>9</catValu><labl>Unknown</labl></catgry></var>");
    QCOMPARE(wordOf(itemsOf(layout).value(0).valueSets.value(0).values.value(0).special), special);
    QCOMPARE(extrasOf(layout), extras);
}

void DdiReaderTest::invalidRangesAreMissing_data()
{
    QTest::addColumn<QByteArray>("ranges");
    QTest::addColumn<QStringList>("missing");
    QTest::newRow("codes") << QByteArray("<item VALUE='8'/><item VALUE='9'/>") << QStringList({ "8", "9" });
    QTest::newRow("range") << QByteArray("<range min='8' max='9'/>") << QStringList({ "8..9" });
    QTest::newRow("range of one code") << QByteArray("<range min='8' max='8'/>") << QStringList({ "8" });
    QTest::newRow("open range") << QByteArray("<range max='-1'/><range min='90'/>")
                                << QStringList({ "-inf..-1", "90..inf" });
    QTest::newRow("ends outside") << QByteArray("<range minExclusive='8' max='9'/>") << QStringList();
    QTest::newRow("no ends") << QByteArray("<range/><item/>") << QStringList();
    QTest::newRow("special value") << QByteArray("<item VALUE='7'/><item VALUE='8'/>") << QStringList({ "8" });
}

void DdiReaderTest::invalidRangesAreMissing()
{
    QFETCH(QByteArray, ranges);
    QFETCH(QStringList, missing);
    const Item item = itemOf("<invalrng>" + ranges + "</invalrng><catgry missing='Y'><catValu>7</catValu></catgry>");
    QCOMPARE(rangesIn(item.missing), missing);
}

void DdiReaderTest::validRangesAreKeptUnlessTheyAreValues_data()
{
    QTest::addColumn<QByteArray>("ranges");
    QTest::addColumn<QStringList>("extras");
    QTest::newRow("values") << QByteArray("<item VALUE='1'/><item VALUE='2'/>") << QStringList();
    QTest::newRow("range around them") << QByteArray("<range min='1' max='2'/>")
                                       << QStringList({ "//X valrng=1 to 2" });
    QTest::newRow("another code") << QByteArray("<item VALUE='1'/><item VALUE='3'/>")
                                  << QStringList({ "//X valrng=1, 3" });
    QTest::newRow("ends outside") << QByteArray("<range minExclusive='0' maxExclusive='3'/>")
                                  << QStringList(
                                         { "//X valrng/range@minExclusive=0", "//X valrng/range@maxExclusive=3" });
}

void DdiReaderTest::validRangesAreKeptUnlessTheyAreValues()
{
    QFETCH(QByteArray, ranges);
    QFETCH(QStringList, extras);
    const Layout layout = variablesOf("<var name=\"X\"><valrng>" + ranges
                                      + "</valrng><catgry><catValu>1</catValu></catgry><catgry><catValu>2</catValu>"
                                        "</catgry></var>");
    QCOMPARE(valuesOf(itemsOf(layout).value(0)), QStringList({ "1=", "2=" }));
    QCOMPARE(extrasOf(layout), extras);
}

void DdiReaderTest::textsOfTheVariableAreItsNote()
{
    QCOMPARE(itemOf("<txt>One</txt><txt/><txt>Two</txt>").note, QString("One\nTwo"));
}

void DdiReaderTest::questionsAndConceptsAreExtras()
{
    const Layout layout = variablesOf("<var name=\"X\"><qstn seqNo='4'><qstnLit>How old?</qstnLit></qstn>"
                                      "<universe>All</universe><concept/></var>");
    QCOMPARE(extrasOf(layout), QStringList({ "//X qstn@seqNo=4", "//X qstn/qstnLit=How old?", "//X universe=All" }));
    QVERIFY(itemsOf(layout).value(0).note.isEmpty());
    QCOMPARE(layout.extras.at(0).line, 1);
    const Layout translated = variablesOf("<var name=\"X\" xml:lang=\"en\"><qstn><qstnLit>How old?</qstnLit>"
                                          "<qstnLit xml:lang=\"fr\">Quel age ?</qstnLit></qstn></var>");
    QCOMPARE(
        extrasOf(translated),
        QStringList({ "//X qstn/qstnLit=How old?", "//X qstn/qstnLit@xml:lang=fr", "//X qstn/qstnLit=Quel age ?" }));
}

void DdiReaderTest::markupIsPartOfItsText()
{
    const Layout layout
        = variablesOf("<var name=\"X\"><txt>A <emph>b</emph> c</txt><universe>All <emph>men</emph> and\n"
                      "women<list><itm>x</itm></list></universe></var>");
    QCOMPARE(itemsOf(layout).value(0).note, QString("A b c"));
    QCOMPARE(
        itemOf("<txt>\n <p xmlns='http://www.w3.org/1999/xhtml'>One <b>a</b></p><p>Two<br/>three</p>\n</txt>").note,
        QString("One a\nTwo\nthree"));
    QCOMPARE(extrasOf(layout), QStringList({ "//X universe=All men and\nwomen\nx" }));
}

void DdiReaderTest::figuresOfTheDataAreNotRead()
{
    const Layout layout = variablesOf("<var name=\"X\"><sumStat type='mean'>3</sumStat><catgry><catValu>1</catValu>"
                                      "<catStat type='freq'>7</catStat></catgry></var>");
    QCOMPARE(extrasOf(layout), QStringList());
    QCOMPARE(valuesOf(itemsOf(layout).value(0)), QStringList({ "1=" }));
}

void DdiReaderTest::unknownAttributesAreExtras()
{
    const Layout layout = variablesOf("<var ID='V' name='X' qstn='Q1' wgt='not-wgt'><location locMap='M'/></var>");
    QCOMPARE(extrasOf(layout), QStringList({ "//X @qstn=Q1", "//X @wgt=not-wgt", "//X location@locMap=M" }));
    const Layout words = variablesOf("<var name='X' intrvl='other' nature='percent'><varFormat type='date' "
                                     "category='time'/><catgry missing='yes'><catValu>1</catValu></catgry></var>");
    QCOMPARE(extrasOf(words),
             QStringList({ "//X @nature=percent", "//X @intrvl=other", "//X varFormat@type=date",
                           "//X varFormat@category=time", "//X//#1 catgry@missing=yes" }));
}

void DdiReaderTest::extrasOfACategoryNameItsValue()
{
    const Layout layout = variablesOf("<var name='X'><catgry><catValu>1</catValu></catgry><catgry excls='false'>"
                                      "<catValu>2</catValu><mrow/><derivation>x</derivation></catgry></var>");
    QCOMPARE(extrasOf(layout), QStringList({ "//X//#2 catgry@excls=false", "//X//#2 catgry/derivation=x" }));
}

void DdiReaderTest::weightIsTheFirstWeight()
{
    const Layout layout = variablesOf("<var name='A'/><var name='B' wgt='wgt'/><var name='C' wgt='wgt'/>");
    QCOMPARE(layout.weight, QString("B"));
    QCOMPARE(extrasOf(layout), QStringList({ "//C @wgt=wgt" }));
}

namespace
{

// Two record groups, with these attributes.
QByteArray hierarchy(const QByteArray &attributes)
{
    return "<fileDscr ID='F1'><fileTxt><fileStrc type='hierarchical'><recGrp rectype='H' " + attributes
        + "><labl>Household</labl></recGrp><recGrp rectype='P' " + attributes + "/></fileStrc></fileTxt></fileDscr>";
}

Layout hierarchyOf(const QByteArray &attributes, const QByteArray &variables)
{
    return layoutOf(withVariables(variables, hierarchy(attributes)));
}

} // namespace

void DdiReaderTest::recordGroupsAreRecords()
{
    const Layout layout
        = hierarchyOf("rtypeloc='3' rtypewidth='1'", "<var name='A' rectype='H'/><var name='B' rectype='P'/>");
    QCOMPARE(recordsOf(layout), QStringList({ "H: A", "P: B" }));
    QCOMPARE(layout.levels.at(0).records.at(1).recordType, QString("P"));
    QVERIFY(!statesOccurrences(layout, layout.levels.at(0).records.at(1)));
    QVERIFY(!layout.levels.at(0).records.at(1).required);
    QCOMPARE(layout.levels.at(0).records.at(1).maximum, 0);
    QCOMPARE(layout.levels.at(0).records.at(0).labels.primary(), QString("Household"));
    QCOMPARE(layout.recordType->start, 3);
    QCOMPARE(layout.recordType->length, 1);
}

void DdiReaderTest::recordTypeIsThatOfItsVariable()
{
    const QByteArray type = "<var ID='RT' name='RECTYPE' rectype='H P'><location StartPos='2' width='1'/><catgry>"
                            "<catValu>P</catValu><labl>Person</labl></catgry><catgry><catValu>H</catValu>"
                            "<labl>Dwelling</labl></catgry></var>";
    const Layout layout
        = hierarchyOf("recidvar='RECTYPE'", "<var name='A' rectype='H'/>" + type + "<var name='B' rectype='P'/>");
    QCOMPARE(recordsOf(layout), QStringList({ "H: A", "P: B" }));
    QCOMPARE(layout.recordType->start, 2);
    QCOMPARE(layout.recordType->length, 1);
    QCOMPARE(layout.levels.at(0).records.at(0).labels.primary(), QString("Household"));
    QCOMPARE(layout.levels.at(0).records.at(1).labels.primary(), QString("Person"));
    const Layout unnamed = hierarchyOf(QByteArray(), type);
    QCOMPARE(recordsOf(unnamed), QStringList({ "H: RECTYPE", "P: RECTYPE" }));
    QVERIFY(!unnamed.recordType);
}

void DdiReaderTest::keyOfAllRecordsIsAnId()
{
    const QByteArray variables = "<var ID='V1' name='SERIAL' rectype='H P'/><var ID='V2' name='LINE' rectype='P'/>";
    for (const char *key : { "keyvar='SERIAL'", "keyvar='V1'", "keyvar='V1 V2'" }) {
        const Layout layout = hierarchyOf(key, variables);
        QCOMPARE(namesOf(layout.levels.at(0).ids), QStringList({ "SERIAL" }));
        QCOMPARE(recordsOf(layout), QStringList({ "H: ", "P: LINE" }));
    }
    QVERIFY(hierarchyOf(QByteArray(), variables).levels.at(0).ids.isEmpty());
}

void DdiReaderTest::variableOfSeveralRecordsIsAnItemOfEach()
{
    QCOMPARE(
        recordsOf(hierarchyOf(QByteArray(), "<var name='A' rectype='P H'/><var name='B'/><var name='C' rectype='H'/>")),
        QStringList({ "H: A B C", "P: A B" }));
}

void DdiReaderTest::filesAreRecords()
{
    const QByteArray files = "<fileDscr ID='F1'><fileTxt><fileName>one.tab</fileName><dimensns><caseQnty>5</caseQnty>"
                             "</dimensns></fileTxt></fileDscr><fileDscr ID='F2'/>";
    const Layout layout
        = layoutOf(withVariables("<var name='A' files='F1'/><var name='B'><location fileid='F2'/></var>"
                                 "<var name='C' files='F2 F1'><location fileid='F1' StartPos='1' width='2'/>"
                                 "<location fileid='F2' StartPos='5' width='3'/></var>",
                                 files));
    QCOMPARE(recordsOf(layout), QStringList({ "one.tab: A C", "F2: B C" }));
    QCOMPARE(layout.levels.at(0).records.at(0).items.at(1).start, 1);
    QCOMPARE(layout.levels.at(0).records.at(1).items.at(1).start, 5);
    QVERIFY(layout.name.isEmpty());
    QVERIFY(!layout.rows);
    QVERIFY(!statesOccurrences(layout, layout.levels.at(0).records.at(0)));
    QCOMPARE(extrasOf(layout), QStringList({ " fileDscr/fileTxt/dimensns/caseQnty=5" }));
    const QByteArray grouped = "<fileDscr ID='F1'><fileTxt><fileName>one.tab</fileName><fileStrc><recGrp keyvar='A'/>"
                               "</fileStrc></fileTxt></fileDscr><fileDscr ID='F2'/>";
    QCOMPARE(recordsOf(layoutOf(withVariables("<var name='A' files='F1'/>", grouped))),
             QStringList({ "one.tab: A", "F2: " }));
}

void DdiReaderTest::linesOfACaseAreRecords()
{
    const auto located = [](const char *name, const char *segment) {
        return "<var name='" + QByteArray(name) + "'><location StartPos='1' width='1' RecSegNo='" + segment
            + "'/></var>";
    };
    const Layout layout = variablesOf(located("A", "1") + located("B", "2") + located("C", "1"));
    QCOMPARE(recordsOf(layout), QStringList({ "1: A C", "2: B" }));
    QVERIFY(!layout.recordType);
    QVERIFY(statesOccurrences(layout, layout.levels.at(0).records.at(1)));
    QCOMPARE(recordsOf(variablesOf(located("A", "1") + located("B", "1"))), QStringList({ ": A B" }));
}

void DdiReaderTest::unknownFilesAndTypesAreReported()
{
    const Layout layout
        = hierarchyOf(QByteArray(), "<var name='A' files='F9' rectype='H'/><var name='B' rectype='Q'/>");
    QCOMPARE(idsOf(layout.problems), QStringList({ "warning unknown-file", "warning unknown-record-type" }));
    QCOMPARE(layout.problems.at(0).path, QString("/H/A"));
    QCOMPARE(recordsOf(layout), QStringList({ "H: A B", "P: B" }));
}

void DdiReaderTest::columnsOfTheRecordTypeMustAgree()
{
    const QByteArray files = "<fileDscr ID='F1'><fileTxt><fileStrc><recGrp rectype='H' rtypeloc='1'/>"
                             "<recGrp rectype='P' rtypeloc='2'/></fileStrc></fileTxt></fileDscr>";
    const Layout layout = layoutOf(withVariables("<var name='A' rectype='H'/>", files));
    QCOMPARE(idsOf(layout.problems), QStringList({ "warning record-type-columns-differ" }));
    QCOMPARE(layout.recordType->start, 1);
}

void DdiReaderTest::repetitionOfUnlikeVariablesIsKept_data()
{
    QTest::addColumn<QByteArray>("second");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("alike") << QByteArray("StartPos='3' width='2'") << QStringList({ "X" });
    QTest::newRow("other place") << QByteArray("StartPos='4' width='2'") << QStringList({ "X_1", "X_2" });
    QTest::newRow("other length") << QByteArray("StartPos='3' width='3'") << QStringList({ "X_1", "X_2" });
    QTest::newRow("no columns") << QByteArray() << QStringList({ "X_1", "X_2" });
}

void DdiReaderTest::repetitionOfUnlikeVariablesIsKept()
{
    QFETCH(QByteArray, second);
    QFETCH(QStringList, names);
    const Layout layout
        = variablesOf("<varGrp type='repetition' name='X' var='V1 V2'/><var ID='V1' name='X_1'><location "
                      "StartPos='1' width='2'/></var><var ID='V2' name='X_2'><location "
                      + second + "/></var>");
    QCOMPARE(namesOf(itemsOf(layout)), names);
    QCOMPARE(itemsOf(layout).at(0).occurrences, names.size() == 1 ? 2 : 1);
    QCOMPARE(extrasOf(layout).isEmpty(), names.size() == 1);
}

void DdiReaderTest::documentWithoutVariablesIsALayout()
{
    const Layout layout = layoutOf("<codeBook/>");
    QVERIFY(layout.isRead());
    QCOMPARE(idsOf(layout.problems), QStringList({ "warning no-variables" }));
    QVERIFY(layout.levels.isEmpty());
}

// A variable that names no record type is in all records of its file.
void DdiReaderTest::copiesInRecordsAreBounded()
{
    QByteArray groups;
    QByteArray variables;
    for (int i = 0; i < 1001; ++i) {
        groups += "<recGrp rectype='" + QByteArray::number(i) + "'/>";
        variables += "<var name='V" + QByteArray::number(i) + "'/>";
    }
    const QByteArray file = "<fileDscr ID='F'><fileTxt><fileStrc>" + groups + "</fileStrc></fileTxt></fileDscr>";
    const Layout layout = layoutOf(withVariables(variables, file));
    QCOMPARE(idsOf(layout.problems), QStringList({ "error too-large" }));
    const QByteArray text(100'000, 't');
    const QByteArray texts[] = { "<txt>" + text + "</txt>", "<labl>" + text + "</labl>",
                                 "<catgry><catValu>1</catValu><txt>" + text + "</txt></catgry>",
                                 "<catgry><catValu>1</catValu><labl>" + text + "</labl></catgry>" };
    for (const QByteArray &content : texts) {
        const QByteArray one = "<var name='X'>" + content + "</var>";
        QCOMPARE(idsOf(layoutOf(withVariables(one, file)).problems), QStringList({ "error too-large" }));
        QVERIFY(variablesOf(one).isRead());
    }
}

void DdiReaderTest::longKeysAreCut()
{
    const QByteArray name(300, 'n');
    const Layout layout = layoutOf("<codeBook><" + name + ">text</" + name + "></codeBook>");
    QCOMPARE(layout.extras.value(0).key.size(), 200);
}

void DdiReaderTest::manyPartsTakeLinearTime_data()
{
    QTest::addColumn<QByteArray>("group");
    QTest::addColumn<QByteArray>("part");
    QTest::addColumn<QByteArray>("variable");
    QTest::newRow("records") << QByteArray("<recGrp rectype='%1' recidvar='V%1' keyvar='V%1'/>") << QByteArray()
                             << QByteArray("<var ID='V%1' name='V%1' rectype='%1'/>");
    QTest::newRow("lines") << QByteArray() << QByteArray()
                           << QByteArray("<var name='V%1'><location StartPos='1' width='1' RecSegNo='%1'/></var>");
    QTest::newRow("repetitions") << QByteArray() << QByteArray("<varGrp type='repetition' name='G%1' var='V%1 W%1'/>")
                                 << QByteArray("<var ID='V%1' name='V%1'/><var ID='W%1' name='W%1'/>");
}

// Each of these parts is looked up by others.
void DdiReaderTest::manyPartsTakeLinearTime()
{
    QFETCH(QByteArray, group);
    QFETCH(QByteArray, part);
    QFETCH(QByteArray, variable);
    constexpr int count = 10'000;
    QByteArray groups;
    QByteArray parts;
    QByteArray variables;
    for (int i = 1; i <= count; ++i) {
        const QByteArray number = QByteArray::number(i);
        groups += QByteArray(group).replace("%1", number);
        parts += QByteArray(part).replace("%1", number);
        variables += QByteArray(variable).replace("%1", number);
    }
    const Layout layout = layoutOf(withVariables(
        parts + variables, "<fileDscr ID='F1'><fileTxt><fileStrc>" + groups + "</fileStrc></fileTxt></fileDscr>"));
    int items = 0;
    for (const Record &record : layout.levels.value(0).records)
        items += record.items.size();
    QCOMPARE(items, count);
}

QTEST_APPLESS_MAIN(DdiReaderTest)
#include "DdiReaderTest.moc"
