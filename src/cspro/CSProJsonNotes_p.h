#ifndef CSPRO_CSPROJSONNOTES_P_H
#define CSPRO_CSPROJSONNOTES_P_H

#include <QJsonObject>
#include <QString>

class ReadReport;

namespace cspro
{

/// The diagnostics of the reader of CSPro 8 dictionaries. Each operation returns at once if there is no report.
class JsonDictionaryNotes
{
public:
    /// Sends the notes to \a newReport, which is not owned; null turns reporting off.
    void setReport(ReadReport *newReport) { report = newReport; }

    /// The file has no layout. \a readProblem states how the system failed to read it. If that is empty, the content is
    /// not a dictionary, and \a problem states the reason.
    void fileNotRead(const QString &readProblem, const QString &problem) const;
    /// Reports the keys and values of the document that the reader skips, or reads as something else.
    void document(const QJsonObject &root) const;
    /// Reading ended within \a record, at a bound.
    void readingEnded(const QString &record) const;

private:
    ReadReport *report = nullptr;
};

} // namespace cspro

#endif
