#include "check/LintSarif.h"

#include "vanlayout_version.h"
#include "write/JsonMembers_p.h"

#include <QUrl>

#include <algorithm>

namespace vanlayout
{

namespace
{

const char *levelOf(Severity severity)
{
    switch (severity) {
    case Severity::Error:
        return "error";
    case Severity::Warning:
        return "warning";
    case Severity::Info:
        break;
    }
    return "note";
}

QString uriOf(const QString &file)
{
    const QString encoded = QString::fromLatin1(QUrl::toPercentEncoding(file, QByteArrayLiteral("/")));
    return file.startsWith(QLatin1Char('/')) ? QLatin1String("file://") + encoded : encoded;
}

template <typename Writer> class SarifWriter : private JsonMembers<Writer>
{
    using Base = JsonMembers<Writer>;
    using Base::array;
    using Base::boolean;
    using Base::integer;
    using Base::object;
    using Base::objects;
    using Base::text;
    using Base::word;

public:
    explicit SarifWriter(Writer &jsonWriter)
        : Base(jsonWriter)
    {
    }

    void write(const QVector<LintedFile> &files)
    {
        object([&] {
            word("$schema", "https://docs.oasis-open.org/sarif/sarif/v2.1.0/os/schemas/sarif-schema-2.1.0.json");
            word("version", "2.1.0");
            array("runs", [&] { object([&] { writeRun(files); }); });
        });
    }

private:
    void writeRun(const QVector<LintedFile> &files)
    {
        object("tool", [this] { object("driver", [this] { writeDriver(); }); });
        array("invocations", [&] { object([&] { writeInvocation(files); }); });
        word("columnKind", "utf16CodeUnits");
        array("results", [&] {
            for (const LintedFile &file : files) {
                const QString uri = uriOf(file.file);
                for (const LintFinding &finding : file.findings)
                    object([&] { writeResult(finding, uri); });
            }
        });
    }

    void writeDriver()
    {
        word("name", "vanlayout");
        word("version", VANLAYOUT_VERSION_STRING);
        objects("rules", lintRules(), [this](const LintRuleInfo &rule) {
            text("id", rule.id);
            object("shortDescription", [&] { text("text", rule.title); });
            object("fullDescription", [&] { text("text", rule.meaning); });
            object("help", [&] { writeHelp(rule); });
            object("defaultConfiguration", [&] { word("level", levelOf(rule.severity)); });
        });
    }

    // The page is part of the package, so it has no address.
    void writeHelp(const LintRuleInfo &rule)
    {
        text("text", QStringLiteral("%1 The section %2 of docs/lint.md has an example.").arg(rule.meaning, rule.id));
        text("markdown",
             QStringLiteral("%1 The section `%2` of `docs/lint.md` has an example; `vanlayout lint "
                            "--list-rules` lists all rules.")
                 .arg(rule.meaning, rule.id));
    }

    void writeInvocation(const QVector<LintedFile> &files)
    {
        const bool areRead
            = std::all_of(files.begin(), files.end(), [](const LintedFile &file) { return file.problem.isEmpty(); });
        boolean("executionSuccessful", areRead);
        array("toolExecutionNotifications", [&] {
            for (const LintedFile &file : files) {
                if (!file.problem.isEmpty())
                    object([&] { writeNotification(file); });
            }
        });
    }
    void writeNotification(const LintedFile &file)
    {
        word("level", "error");
        object("message", [&] { text("text", file.problem); });
        array("locations",
              [&] { object([&] { object("physicalLocation", [&] { writeArtifact(uriOf(file.file)); }); }); });
    }

    void writeResult(const LintFinding &finding, const QString &uri)
    {
        text("ruleId", infoOf(finding.rule).id);
        integer("ruleIndex", int(finding.rule));
        word("level", levelOf(finding.severity()));
        object("message", [&] { text("text", finding.message); });
        array("locations", [&] { object([&] { writeLocation(finding, uri); }); });
    }
    void writeLocation(const LintFinding &finding, const QString &uri)
    {
        object("physicalLocation", [&] {
            writeArtifact(uri);
            if (finding.line > 0)
                object("region", [&] { integer("startLine", finding.line); });
        });
        if (!finding.path.isEmpty())
            array("logicalLocations", [&] { object([&] { text("fullyQualifiedName", finding.path); }); });
    }
    void writeArtifact(const QString &uri)
    {
        object("artifactLocation", [&] { text("uri", uri); });
    }
};

} // namespace

bool writeLintSarif(const QVector<LintedFile> &files, QIODevice &device, JsonStyle style)
{
    return writeJsonDocument(device, style, [&](auto &json) { SarifWriter(json).write(files); });
}

} // namespace vanlayout
