#include "lookup/Lookup.h"

#include "import/ErrorManager.h"
#include "import/ReadReport.h"
#include "lookup/LookupEntries_p.h"
#include "util/EmptyText_p.h"
#include "util/FileReading_p.h"
#include "util/TextCache_p.h"
#include "util/UtilFiles.h"

#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <algorithm>
#include <iterator>
#include <limits>

namespace
{

constexpr char separators[] = { ' ', '\t', ',', ';', ':' };
constexpr int spaceSeparator = 0;

// How many lines pass from one report of the progress to the next; a power of two.
constexpr int linesOfProgress = 1 << 13;

QString withoutLeadingBlanks(const QStringRef &text)
{
    const auto *first = std::find_if_not(text.begin(), text.end(), [](QChar character) { return character.isSpace(); });
    return text.mid(int(first - text.begin())).toString();
}

// The character of a separator by its number; a blank for a number that no separator has.
QChar separatorCharacter(int separator)
{
    const bool isKnown = separator >= 0 && separator < int(std::size(separators));
    return QLatin1Char(separators[isKnown ? separator : spaceSeparator]);
}

// A separator in the first column has no key in front of it, and counts as none.
bool hasKey(int separatorPosition)
{
    return separatorPosition >= 1;
}

// Counts as far as an int does.
void increase(int &counter)
{
    if (counter < std::numeric_limits<int>::max())
        ++counter;
}

} // namespace

TVpLookup::TVpLookup()
    : id(emptyText())
    , label(emptyText())
    , errorText(emptyText())
    , text1(emptyText())
    , text2(emptyText())
    , fileName(emptyText())
{
}

TVpLookup::TVpLookup(const TVpLookup &other) = default;
TVpLookup &TVpLookup::operator=(const TVpLookup &other) = default;

TVpLookup::TVpLookup(TVpLookup && /*other*/)
    : errorCode(0)
    , flag1(false)
{
}

TVpLookup::~TVpLookup() = default;

QString TVpLookup::getId() const
{
    return id;
}

void TVpLookup::setId(const QString &newId)
{
    id = newId;
}

QString TVpLookup::getLabel() const
{
    return label;
}

void TVpLookup::setLabel(const QString &newLabel)
{
    label = newLabel;
}

QString TVpLookup::getFfileName() const
{
    return fileName;
}

void TVpLookup::setFfileName(const QString &newFileName)
{
    fileName = newFileName;
}

int TVpLookup::getSeparator() const
{
    return separator;
}

void TVpLookup::setSeparator(int newSeparator)
{
    separator = newSeparator;
}

int TVpLookup::getMaxMessages() const
{
    return maxMessages;
}

void TVpLookup::setMaxMessages(int limit)
{
    maxMessages = limit;
}

QString TVpLookup::getReadProblem() const
{
    return readFailed ? errorText : QString();
}

void TVpLookup::setProgressListener(ProgressListener listener)
{
    progressListener = std::move(listener);
}

void TVpLookup::updateFileName(QString name)
{
    if (name.isEmpty() && !fileName.isEmpty()) {
        fileAccepted = true;
    } else if (UtilFiles::FileExists(name)) {
        fileName = name;
        fileAccepted = true;
    }
}

void TVpLookup::consistencyCheck(econsistencyCheck mode, std::map<QString, int *> &frequencies, QStringList *errors)
{
    consistency = mode;
    importAVL(frequencies, errors); // the result is dropped
}

bool TVpLookup::isCounting() const
{
    return consistency == ccFrequencies || consistency == ccBoth;
}

bool TVpLookup::isReporting() const
{
    return consistency == ccErrors || consistency == ccBoth;
}

QString TVpLookup::separatorText() const
{
    return QString(separatorCharacter(separator));
}

bool TVpLookup::openLookup()
{
    if (!UtilFiles::FileExists(fileName))
        return false;
    fileSize = QFileInfo(fileName).size();
    currentSize = 0;
    readFailed = false;
    return true;
}

bool TVpLookup::readLookup()
{
    currentLine = emptyText();
    QFile file(fileName);
    if (file.open(QIODevice::ReadOnly)) {
        QTextStream stream(&file);
        QString line;
        while (stream.readLineInto(&line))
            currentLine += line;
    }
    if (readFailed)
        return false;
    currentSize = currentLine.size();
    increase(lineNumber);
    return true;
}

bool TVpLookup::importAVL(std::map<QString, int *> &frequencies, QStringList *errors)
{
    readFailed = false;
    if (!openLookup()) {
        errorText = formatMessage(QStringLiteral("Workspace.LoadDefinition.InputDataFile"),
                                  QStringLiteral("Input data file [%1] was not found"), fileName);
        errorCode = 1;
        if (report)
            report->add(NoteKind::fileNotRead, fileName);
        return false;
    }
    // Key and value stay as the last line of an earlier check has left them.
    entries.clear();
    lineNumber = 0;
    currentLine = emptyText();
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        if (report)
            report->add(NoteKind::fileNotRead, fileName);
        return true;
    }

    int firstKeySize = 0;
    lookup::Entries newEntries;
    lookup::Frequencies counted(frequencies);
    TextCache values; // they repeat a lot
    QTextStream stream(&file);
    stream.setAutoDetectUnicode(true);
    while (!stream.atEnd()) {
        const qint64 taken = file.pos();
        const bool hasLine = stream.readLineInto(&currentLine);
        if (file.error() != QFileDevice::NoError)
            break; // the line in hand is cut
        if (!hasLine && file.pos() == taken) {
            if (report)
                report->add(NoteKind::readingEnded, QString(), lineNumber);
            break; // not at its end, and gives nothing: the file became shorter
        }
        currentSize = currentLine.size();
        increase(lineNumber);
        splitKeyValueAVL(errors);
        if (report && currentLine.contains(QChar(QChar::ReplacementCharacter)))
            report->add(NoteKind::unreadableLetters, currentLine, lineNumber);
        if (isReporting()) {
            if (firstKeySize == 0) // an empty first key leaves it open
                firstKeySize = key.size();
            else if (key.size() != firstKeySize)
                issueErrorMessage(errors,
                                  formatMessage(QStringLiteral("VpLookup.importAVL.wrongKeySize"),
                                                QStringLiteral("Key [%1] has a different key size [%2] from the first "
                                                               "record [%3]"),
                                                key, QString::number(key.size()), QString::number(firstKeySize)));
        }
        const quint32 keyHash = lookup::hashOf(key);
        if (newEntries.add(key, keyHash, values.text(value))) {
            if (isCounting())
                counted.count(key, keyHash, value);
        } else {
            // A line that repeats the one before is told as that.
            if (report && hasKey(separatorPosition()))
                report->add(NoteKind::duplicateKey, currentLine, lineNumber);
            if (isReporting())
                issueErrorMessage(errors,
                                  formatMessage(QStringLiteral("VpLookup.importAVL.duplicateKey"),
                                                QStringLiteral("Key [%1] already exists"), key));
        }
        if (progressListener && lineNumber % linesOfProgress == 0)
            progressListener(file.pos(), fileSize);
    }
    if (hasReadFailed(file))
        return false;
    newEntries.moveTo(entries);
    return true;
}

// Whether the system failed to read the file to its end. A file of no size may fail at its first byte, which the stream
// has not asked for.
bool TVpLookup::hasReadFailed(QFile &file)
{
    char next = 0;
    file.read(&next, 1);
    const QString problem = readProblemOf(file);
    readFailed = !problem.isEmpty();
    if (!readFailed)
        return false;
    errorText = problem;
    errorCode = 1;
    if (report)
        report->add(NoteKind::readFailed, problem, lineNumber + 1);
    return true;
}

// Of the first one in the line; -1 if there is none.
int TVpLookup::separatorPosition() const
{
    return currentLine.indexOf(separatorCharacter(separator));
}

void TVpLookup::splitKeyValueAVL(QStringList *errors)
{
    const int position = separatorPosition();
    if (hasKey(position)) {
        const QStringRef rest = currentLine.midRef(position + 1);
        key = currentLine.left(position);
        value = separator == spaceSeparator ? withoutLeadingBlanks(rest) : rest.toString();
        return;
    }
    // Key and value stay those of the line before.
    if (report)
        report->add(NoteKind::repeatsLineBefore, currentLine, lineNumber);
    if (isReporting()) {
        issueErrorMessage(errors,
                          formatMessage(QStringLiteral("VpLookup.splitKeyValueAVL.noSeparator"),
                                        QStringLiteral("Separator [%1] does not exist"), separatorText()));
    }
}

void TVpLookup::setReadReport(ReadReport *newReport)
{
    report = newReport;
}

void TVpLookup::issueErrorMessage(QStringList *errors, QString message)
{
    increase(errorCount);
    if (errorCount > maxMessages && !tooManyIssued) {
        tooManyIssued = true;
        // The two numbers stand as the one character with that code, not as digits.
        message = formatMessage(QStringLiteral("System.Common.MaxMessages"),
                                QStringLiteral("Too many error messages [%1], only the first [%2] will be shown"),
                                QString(QChar(errorCount)), QString(QChar(maxMessages)));
    }
    if (errors)
        errors->append(QString::number(lineNumber) + Vocabulary::Underscore + message);
}
