#include "read/DdiParser_p.h"

#include "read/CSProCommon_p.h"
#include "read/DdiElements_p.h"
#include "read/DdiVariable_p.h"
#include "util/KeyedHash_p.h"

#include <QRegularExpression>

namespace vanlayout::ddi
{

namespace
{

/// Reads the sections of a document; variables have a reader of their own.
class Parser
{
public:
    explicit Parser(Xml &document)
        : xml(document)
    {
    }

    Content read()
    {
        readVersion();
        while (xml.nextChild()) {
            const QString name = xml.name();
            if (name == QLatin1String("stdyDscr"))
                readStudy();
            else if (name == QLatin1String("fileDscr"))
                readFile();
            else if (name == QLatin1String("dataDscr"))
                readData();
            else
                keep(xml, content.statements);
        }
        dropTitlesOfDocument();
        return std::move(content);
    }

private:
    // The attribute `version`, or the namespace `ddi:codebook:2_5`.
    void readVersion()
    {
        static const QRegularExpression form(QStringLiteral("\\Addi:codebook:([0-9]+)_([0-9]+)\\z"));
        content.version = xml.attribute("version");
        const QXmlStreamAttributes attributes = xml.attributes();
        for (const QXmlStreamAttribute &attribute : attributes) {
            const QRegularExpressionMatch match = form.match(attribute.value().toString());
            if (content.version.isEmpty() && match.hasMatch())
                content.version = match.captured(1) + QLatin1Char('.') + match.captured(2);
        }
        keepAttributes(xml, content.statements, QString(), " ID version ");
    }

    // Calls the function with the name of each child; the function reads the child.
    template <typename Read> void forEachChild(Read read)
    {
        while (xml.nextChild())
            read(xml.name());
    }

    void readStudy()
    {
        const QString prefix = QStringLiteral("stdyDscr/");
        forEachChild([&](const QString &name) {
            if (name == QLatin1String("citation"))
                readCitation();
            else if (name == QLatin1String("notes"))
                readStudyNote();
            else
                keep(xml, content.statements, prefix);
        });
    }

    void readCitation()
    {
        const QString prefix = QStringLiteral("stdyDscr/citation/");
        forEachChild([&](const QString &name) {
            if (name != QLatin1String("titlStmt")) {
                keep(xml, content.statements, prefix);
                return;
            }
            forEachChild([&](const QString &part) {
                if (part == QLatin1String("titl") || part == QLatin1String("parTitl"))
                    readLabel(xml, content.titles);
                else
                    keep(xml, content.statements, prefix + QLatin1String("titlStmt/"));
            });
        });
    }

    void readStudyNote()
    {
        const Note note = readNote(xml);
        if (note.type == QLatin1String("note"))
            appendText(content.note, note.text);
        else if (note.type == QLatin1String("aliases"))
            content.aliases += aliasesOf(note.text);
        else
            keepNote(note, content.statements, QStringLiteral("stdyDscr/notes"));
    }

    // The description of the document usually has the title of the study.
    void dropTitlesOfDocument()
    {
        KeyedSet<QString> titles;
        for (const Label &title : qAsConst(content.titles.parts))
            titles.insert(title.text);
        const auto isTitle = [&](const Statement &statement) {
            return statement.key.startsWith(QLatin1String("docDscr/citation/titlStmt/"))
                && titles.find(statement.value) != titles.end();
        };
        QVector<Statement> kept;
        kept.reserve(content.statements.size());
        for (const Statement &statement : qAsConst(content.statements)) {
            if (!isTitle(statement))
                kept.append(statement);
            else if (!kept.isEmpty() && kept.constLast().key == statement.key + QLatin1String("@xml:lang"))
                kept.removeLast(); // the language of the title
        }
        content.statements = kept;
    }

    void readFile()
    {
        DataFile file;
        file.line = xml.line();
        file.id = xml.attribute("ID");
        keepAttributes(xml, content.statements, QStringLiteral("fileDscr"), " ID ");
        forEachChild([&](const QString &name) {
            if (name == QLatin1String("fileTxt"))
                readFileText(file);
            else
                keep(xml, content.statements, QStringLiteral("fileDscr/"));
        });
        content.files.append(file);
    }

    void readFileText(DataFile &file)
    {
        forEachChild([&](const QString &name) {
            if (name == QLatin1String("fileName"))
                appendText(file.name, xml.text());
            else if (name == QLatin1String("fileStrc"))
                readStructure(file);
            else if (name == QLatin1String("dimensns"))
                readDimensions(file);
            else if (name == QLatin1String("verStmt"))
                readVersionOfFile(file);
            else
                keep(xml, content.statements, QStringLiteral("fileDscr/fileTxt/"));
        });
    }

    void readStructure(DataFile &file)
    {
        const QString prefix = QStringLiteral("fileDscr/fileTxt/fileStrc");
        keepAttributes(xml, content.statements, prefix, " ID type ");
        forEachChild([&](const QString &name) {
            if (name == QLatin1String("recGrp"))
                file.groups.append(readRecordGroup());
            else
                keep(xml, content.statements, prefix + QLatin1Char('/'));
        });
    }

    RecordGroup readRecordGroup()
    {
        const QString prefix = QStringLiteral("recGrp");
        RecordGroup group;
        group.line = xml.line();
        group.id = xml.attribute("ID");
        group.type = xml.attribute("rectype");
        group.typeStart = countOf(xml.attribute("rtypeloc")).value_or(0);
        group.typeLength = countOf(xml.attribute("rtypewidth")).value_or(0);
        group.keys = wordsOf(xml.attribute("keyvar"));
        group.typeVariable = xml.attribute("recidvar");
        keepAttributes(xml, content.statements, prefix, " ID rectype rtypeloc rtypewidth rtypevtype keyvar recidvar ");
        forEachChild([&](const QString &name) {
            if (name == QLatin1String("labl"))
                readLabel(xml, group.labels);
            else if (name == QLatin1String("recDimnsn"))
                readRecordDimensions(group);
            else
                keep(xml, content.statements, prefix + QLatin1Char('/'));
        });
        return group;
    }

    void readRecordDimensions(RecordGroup &group)
    {
        forEachChild([&](const QString &name) {
            if (name == QLatin1String("logRecL"))
                group.length = countOf(xml.text());
            else if (name == QLatin1String("varQnty"))
                xml.skip();
            else
                keep(xml, content.statements, QStringLiteral("recGrp/recDimnsn/"));
        });
    }

    void readDimensions(DataFile &file)
    {
        forEachChild([&](const QString &name) {
            if (name == QLatin1String("caseQnty"))
                readCases(file);
            else if (name == QLatin1String("logRecL"))
                file.lineLength = countOf(xml.text());
            else if (name == QLatin1String("varQnty"))
                xml.skip();
            else
                keep(xml, content.statements, QStringLiteral("fileDscr/fileTxt/dimensns/"));
        });
    }

    void readCases(DataFile &file)
    {
        const int line = xml.line();
        const QString text = xml.text();
        bool isNumber = false;
        const qint64 rows = text.trimmed().toLongLong(&isNumber);
        if (isNumber && rows >= 0)
            file.rows = rows;
        else if (!text.isEmpty())
            content.statements.append({ QStringLiteral("fileDscr/fileTxt/dimensns/caseQnty"), text, line, 0 });
    }

    // A date with a time is that of the data, as in the documents of this library.
    void readVersionOfFile(DataFile &file)
    {
        static const QRegularExpression form(
            QStringLiteral("\\A[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\\z"));
        const QString prefix = QStringLiteral("fileDscr/fileTxt/verStmt/");
        forEachChild([&](const QString &name) {
            const QString date = xml.attribute("date");
            if (name == QLatin1String("version") && form.match(date).hasMatch() && !file.date) {
                file.date = date;
                keepAttributes(xml, content.statements, prefix + name, " ID date ");
                xml.skip();
            } else {
                keep(xml, content.statements, prefix);
            }
        });
    }

    void readData()
    {
        forEachChild([&](const QString &name) {
            if (name == QLatin1String("var"))
                readVariable();
            else if (name == QLatin1String("varGrp"))
                readGroup();
            else if (name == QLatin1String("notes"))
                readDataNote();
            else
                keep(xml, content.statements, QStringLiteral("dataDscr/"));
        });
    }

    void readVariable()
    {
        bool isWeight = false;
        content.variables.append(ddi::readVariable(xml, isWeight));
        Variable &variable = content.variables.last();
        if (!isWeight)
            return;
        if (content.weight.isEmpty())
            content.weight = variable.item.name;
        else
            variable.statements.append({ QStringLiteral("@wgt"), QStringLiteral("wgt"), variable.line, 0 });
    }

    void readGroup()
    {
        const QString prefix = QStringLiteral("varGrp");
        Group group;
        group.line = xml.line();
        group.id = xml.attribute("ID");
        group.type = xml.attribute("type");
        if (group.type == QLatin1String("other"))
            group.type = xml.attribute("otherType");
        group.name = xml.attribute("name");
        group.variables = wordsOf(xml.attribute("var"));
        group.groups = wordsOf(xml.attribute("varGrp"));
        keepAttributes(xml, content.statements, prefix, " ID type otherType name var varGrp ");
        forEachChild([&](const QString &name) {
            if (name == QLatin1String("labl"))
                readLabel(xml, group.labels);
            else if (name == QLatin1String("txt"))
                appendText(group.note, xml.text());
            else if (name == QLatin1String("notes"))
                group.notes.append(readNote(xml));
            else
                keep(xml, content.statements, prefix + QLatin1Char('/'));
        });
        content.groups.append(group);
    }

    void readDataNote()
    {
        const Note note = readNote(xml);
        if (note.type == QLatin1String("relation"))
            content.relations.append(relationOf(note));
        else
            keepNote(note, content.statements, QStringLiteral("dataDscr/notes"));
    }

    // Each line is a link: `primary, item = secondary, item`.
    static Relation relationOf(const Note &note)
    {
        Relation relation;
        relation.name = note.subject;
        const QStringList lines = note.text.isEmpty() ? QStringList() : note.text.split(QLatin1Char('\n'));
        for (const QString &line : lines) {
            const QStringList sides = line.split(QLatin1String(" = "));
            relation.primary = firstOf(sides.value(0));
            relation.links.append({ linkOf(sides.value(0)), firstOf(sides.value(1)), linkOf(sides.value(1)) });
        }
        return relation;
    }
    static QString firstOf(const QString &side) { return side.section(QLatin1String(", "), 0, 0); }
    static QString linkOf(const QString &side)
    {
        const QString item = side.section(QLatin1String(", "), 1);
        return item == QLatin1String("(occurrence number)") ? QString() : item;
    }

    Xml &xml;
    Content content;
};

} // namespace

Content readCodeBook(Xml &xml)
{
    return Parser(xml).read();
}

} // namespace vanlayout::ddi
