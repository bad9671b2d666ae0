#ifndef LAYOUT_READ_DDICONTENT_P_H
#define LAYOUT_READ_DDICONTENT_P_H

#include "model/Layout.h"

#include <QStringList>

/// The parts of a DDI document before they are put together as levels and records.
namespace vanlayout::ddi
{

/// A statement for which the layout has no member.
struct Statement {
    QString key; ///< elements below the element that has it, separated by `/`; `@` precedes the name of an attribute
    QString value;
    int line = 0;
    int category = 0; ///< 1-based number of the category that has it; 0 for the variable
};

/// A fact about a variable that becomes a problem once its record is known.
struct Finding {
    Severity severity = Severity::Warning;
    const char *id = "";
    QString message;
    int line = 0;
};

/// An element `notes`.
struct Note {
    QString language;
    QString type;
    QString subject;
    QString text;
    int line = 0;
};

/// An element `recGrp`.
struct RecordGroup {
    QString id;
    QString type;
    int typeStart = 0; ///< 1-based column; 0 if it is not stated
    int typeLength = 0;
    QStringList keys;     ///< IDs or names of variables
    QString typeVariable; ///< ID or name of the variable for the type, or names of ids
    Labels labels;
    std::optional<int> length;
    int line = 0;
};

/// An element `fileDscr`.
struct DataFile {
    QString id;
    QString name;
    QVector<RecordGroup> groups;
    std::optional<int> lineLength;
    std::optional<qint64> rows;
    std::optional<QString> date;
    int line = 0;
};

/// An element `varGrp`.
struct Group {
    QString id;
    QString type; ///< the other type, if the type is `other`
    QString name;
    Labels labels;
    QString note;
    QStringList variables; ///< IDs
    QStringList groups;    ///< IDs
    QVector<Note> notes;
    int line = 0;
};

/// An element `location`.
struct Location {
    QString file;
    QString segment;
    int start = 0;
    int length = 0;
};

/// An element `valrng`.
struct ValidRanges {
    QString set; ///< name of the value set; empty if it is not stated
    QVector<Range> ranges;
    bool isUsed = false; ///< whether a value set has these ranges
};

/// An element `catgry`.
struct Category {
    Value value;
    bool hasCode = false;
    bool isMissing = false;
    QString missingKind;
    QStringList texts;
};

/// An element `var`. Once it is read, its item has its value sets, and the members after `findings` are empty.
struct Variable {
    Item item;
    QString id;
    QStringList files;       ///< IDs
    QStringList recordTypes; ///< texts that mark the lines
    QVector<Location> locations;
    int line = 0;
    QVector<Statement> statements;
    QVector<Finding> findings;

    QVector<ValidRanges> valid;
    QVector<Range> invalid;
    QVector<Category> categories;
    QVector<Note> notes;
};

/// All of a document.
struct Content {
    QString version;
    Labels titles;
    QString note;
    QStringList aliases;
    QVector<DataFile> files;
    QVector<Group> groups;
    QVector<Variable> variables;
    QVector<Relation> relations;
    QString weight;
    QVector<Statement> statements;
};

} // namespace vanlayout::ddi

#endif
