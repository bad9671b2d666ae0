#ifndef VANLAYOUT_EXPLAIN_H
#define VANLAYOUT_EXPLAIN_H

#include <string>
#include <vector>

class QString;
class ReadReport;

/// The words that `--fail-on` accepts: "lost", "changed" and the kinds of notes.
std::vector<std::string> explainFailures();

/// Options of `vanlayout explain`.
struct ExplainOptions {
    std::string format = "table";                   ///< table or json
    std::string type = "auto";                      ///< auto, the name of a file type, or lookup
    std::string decimals = "no";                    ///< yes or no
    std::string separator = "space";                ///< separator of lookup files
    bool showsAll = false;                          ///< all places of a kind instead of only the first ones
    bool isSummary = false;                         ///< one line per file
    std::vector<std::string> failures = { "lost" }; ///< kinds of notes, "lost" or "changed", that make a finding
    std::vector<std::string> files;                 ///< in the encoding of the system
};

/// Reads each file with a report, prints the reports by severity, and returns the worst status: statusFinding if there
/// is a note of one of `failures`: of this kind, with "lost" any note of a loss, with "changed" any note of a loss or a
/// change.
int explain(const ExplainOptions &options);

/// The number of notes of a report in words: "6 notes (1 lost, 2 changed, 3 info)".
QString countsOf(const ReadReport &report);

#endif
