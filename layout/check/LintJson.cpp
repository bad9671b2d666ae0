#include "check/LintJson.h"

#include "write/JsonMembers_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

template <typename Writer> class LintJsonWriter : private JsonMembers<Writer>
{
    using Base = JsonMembers<Writer>;
    using Base::integer;
    using Base::object;
    using Base::objects;
    using Base::optionalText;
    using Base::text;

public:
    explicit LintJsonWriter(Writer &jsonWriter)
        : Base(jsonWriter)
    {
    }

    void write(const LintedFile &file)
    {
        object([&] {
            text("file", file.file);
            if (!file.problem.isEmpty()) {
                text("problem", file.problem);
                return;
            }
            text("format", wordOf(file.format));
            integer("errors", file.countOf(Severity::Error));
            integer("warnings", file.countOf(Severity::Warning));
            integer("infos", file.countOf(Severity::Info));
            objects("findings", file.findings, [this](const LintFinding &finding) { write(finding); });
        });
    }

private:
    void write(const LintFinding &finding)
    {
        text("rule", infoOf(finding.rule).id);
        text("severity", wordOf(finding.severity()));
        if (finding.line > 0)
            integer("line", finding.line);
        optionalText("path", finding.path);
        text("message", finding.message);
    }
};

} // namespace

int LintedFile::countOf(Severity severity) const
{
    return int(std::count_if(findings.begin(), findings.end(),
                             [&](const LintFinding &finding) { return finding.severity() == severity; }));
}

bool writeLintJson(const LintedFile &file, QIODevice &device, JsonStyle style)
{
    return writeJsonDocument(device, style, [&](auto &json) { LintJsonWriter(json).write(file); });
}

} // namespace vanlayout
