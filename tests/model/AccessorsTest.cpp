#ifdef __GNUC__
#pragma GCC diagnostic ignored "-Wdelete-non-virtual-dtor" // entities are deleted through a pointer to their own class
#endif

#include "import/Constants.h"
#include "model/Config.h"
#include "model/Entity.h"
#include "model/Metadata.h"
#include "model/Selection.h"
#include "model/Variable.h"

#include <QDir>
#include <QStandardItemModel>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace
{

template <typename Value> using Held = Value;

// Values that are not the default of any field: three of each type, of which no two adjacent ones are equal.
template <typename Value> Value sample(int number)
{
    if constexpr (std::is_pointer_v<Value>) {
        // Pointers that are stored and never followed.
        static std::max_align_t places[3];
        return reinterpret_cast<Value>(&places[number]);
    } else if constexpr (std::is_same_v<Value, bool>) {
        return number != 1;
    } else if constexpr (std::is_same_v<Value, QString>) {
        return QStringList({ "a/b", QString::fromUtf8("\xC3\xA9 \xE6\x97\xA5"), "c\\d" }).at(number);
    } else if constexpr (std::is_same_v<Value, QStringList>) {
        return QStringList({ "a", "b" }).mid(number % 2);
    } else if constexpr (std::is_same_v<Value, VarWipChoice>) {
        VarWipChoice choice;
        choice.setRecType(QString::number(number));
        choice.setField("field");
        choice.setDataProvider("provider");
        choice.setStart(number + 1);
        choice.setFormat("8.2");
        return choice;
    } else if constexpr (std::is_same_v<Value, TVpVariable>) {
        TVpVariable variable;
        variable.setName(QString::number(number));
        variable.setStart(number + 1);
        return variable;
    } else if constexpr (std::is_same_v<Value, QModelIndex>) {
        static QStandardItemModel model(3, 1);
        return model.index(number, 0);
    } else if constexpr (std::is_same_v<Value, std::pair<std::string, std::string>>) {
        return { "code", std::to_string(number) };
    } else if constexpr (std::is_same_v<Value, std::vector<std::pair<std::string, std::string>>>) {
        return { size_t(number) + 1, { "a", "b" } };
    } else if constexpr (std::is_same_v<Value, QList<QPair<QString, int>>>) {
        return { { "pair", number } };
    } else if constexpr (std::is_enum_v<Value>) {
        return Value(number == 1 ? 1 : 2);
    } else {
        return Value(number + 3);
    }
}

template <typename Value> bool isSame(const Value &a, const Value &b)
{
    if constexpr (std::is_same_v<Value, VarWipChoice>)
        return a.getRecType() == b.getRecType() && a.getField() == b.getField()
            && a.getDataProvider() == b.getDataProvider() && a.getStart() == b.getStart()
            && a.getFormat() == b.getFormat();
    else if constexpr (std::is_same_v<Value, TVpVariable>)
        return a.getName() == b.getName() && a.getStart() == b.getStart();
    else
        return a == b;
}

/// A record of any class.
using AnyRecord = std::shared_ptr<void>;

/// One field of a record, of any type.
class Field
{
public:
    virtual ~Field() = default;

    virtual bool hasDefault(const AnyRecord &record) const = 0;
    virtual bool isNotNull(const AnyRecord &record) const = 0; ///< whether it is a text that is not null
    virtual bool isUnset(const AnyRecord &record) const = 0;   ///< also true without an object, if the default is one
    virtual void set(const AnyRecord &record, size_t setter, int number) const = 0;
    virtual bool has(const AnyRecord &record, int number) const = 0;
    virtual size_t setterCount() const = 0;

    virtual bool hasAdder() const = 0;
    virtual void add(const AnyRecord &record, int number) const = 0;
    virtual bool holdsAdded(const AnyRecord &record, const QList<int> &numbers) const = 0;

    virtual AnyRecord makeRecord() const = 0;
    virtual AnyRecord copyOf(const AnyRecord &record) const = 0;
    virtual AnyRecord assignedFrom(const AnyRecord &record) const = 0;
    virtual void assignToItself(const AnyRecord &record) const = 0;
    virtual AnyRecord movedFrom(const AnyRecord &record) const = 0;
    virtual AnyRecord moveAssignedFrom(const AnyRecord &record) const = 0;

    QString record() const { return name.section('.', 0, 0); }
    AnyRecord makeRecordWithIt() const
    {
        const AnyRecord record = makeRecord();
        set(record, 0, 0);
        return record;
    }

    QString name;
    bool isEmptyByDefault = false; ///< texts and containers, which a true move takes
};

template <typename Record, typename Value> class FieldOf : public Field
{
public:
    bool hasDefault(const AnyRecord &record) const override
    {
        return isNew ? allAnswer(record, [&](const Value &value) { return !isSame(value, initial); }) : isUnset(record);
    }
    bool isUnset(const AnyRecord &record) const override
    {
        return allAnswer(record, [&](const Value &value) { return isSame(value, initial); });
    }
    bool isNotNull(const AnyRecord &record) const override
    {
        if constexpr (std::is_same_v<Value, QString>)
            return !allAnswer(record, [](const QString &text) { return text.isNull(); });
        return false;
    }
    void set(const AnyRecord &record, size_t setter, int number) const override
    {
        setters.at(setter)(in(record), value(number));
    }
    bool has(const AnyRecord &record, int number) const override
    {
        const Value expected = shown ? shown(value(number)) : value(number);
        return allAnswer(record, [&](const Value &value) { return isSame(value, expected); });
    }
    size_t setterCount() const override { return setters.size(); }

    bool hasAdder() const override { return bool(adder); }
    void add(const AnyRecord &record, int number) const override { adder(in(record), number); }
    bool holdsAdded(const AnyRecord &record, const QList<int> &numbers) const override
    {
        return added(in(record), numbers);
    }
    template <typename Item, typename Add, typename ListOf> void setAdder(Add addItem, ListOf listOf)
    {
        adder = [addItem](Record &record, int number) {
            Item item = sample<Item>(number);
            addItem(record, item);
        };
        added = [listOf](Record &record, const QList<int> &numbers) {
            QList<Item> expected;
            for (const int number : numbers)
                expected.append(sample<Item>(number));
            return listOf(record) == expected;
        };
    }

    AnyRecord makeRecord() const override { return std::make_shared<Record>(); }
    AnyRecord copyOf(const AnyRecord &record) const override
    {
        return std::make_shared<Record>(std::as_const(in(record)));
    }
    AnyRecord assignedFrom(const AnyRecord &record) const override
    {
        auto assigned = std::make_shared<Record>();
        *assigned = std::as_const(in(record));
        return assigned;
    }
    void assignToItself(const AnyRecord &record) const override { in(record) = std::as_const(in(record)); }
    AnyRecord movedFrom(const AnyRecord &record) const override
    {
        return std::make_shared<Record>(std::move(in(record)));
    }
    AnyRecord moveAssignedFrom(const AnyRecord &record) const override
    {
        auto assigned = std::make_shared<Record>();
        *assigned = std::move(in(record));
        return assigned;
    }

    // `checked` is only a flag.
    Value value(int number) const
    {
        if constexpr (std::is_same_v<Value, int>) {
            if (name == QLatin1String("TVpVariable.checked"))
                return number != 1;
        }
        return sample<Value>(number);
    }

    Value initial;
    bool isNew = false; ///< the default is a new object
    std::vector<std::function<Value(Record &)>> getters;
    std::vector<std::function<void(Record &, const Value &)>> setters;
    std::function<Value(const Value &)> shown;

private:
    static Record &in(const AnyRecord &record) { return *static_cast<Record *>(record.get()); }

    template <typename Question> bool allAnswer(const AnyRecord &record, Question question) const
    {
        return std::all_of(getters.begin(), getters.end(),
                           [&](const auto &getter) { return question(Value(getter(in(record)))); });
    }

    std::function<void(Record &, int)> adder;
    std::function<bool(Record &, const QList<int> &)> added;
};

using Fields = std::vector<const Field *>;

/// The rows of the table as objects.
class Table
{
public:
    // clang-format off
    Table()
    {
#include "accessor-rows.inc"
    } // clang-format on

    QStringList records() const
    {
        QStringList names;
        for (const auto &field : fields)
            names.append(field->record());
        names.removeDuplicates();
        return names;
    }

    Fields fieldsOf(const QString &record) const
    {
        Fields found;
        for (const auto &field : fields) {
            if (field->record() == record)
                found.push_back(field.get());
        }
        return found;
    }

    std::vector<std::unique_ptr<Field>> fields;

private:
    template <typename Record, typename Value>
    FieldOf<Record, Value> &add(const char *name, Value initial, const char *initialName)
    {
        auto field = std::make_unique<FieldOf<Record, Value>>();
        field->name = name;
        field->initial = initial;
        field->isNew = qstrcmp(initialName, "new") == 0;
        field->isEmptyByDefault = qstrcmp(initialName, "empty") == 0;
        FieldOf<Record, Value> &added = *field;
        fields.push_back(std::move(field));
        return added;
    }
};

// Returns the fields that differ from those of a new record, in which only this field, or no field, was set.
QStringList differences(const Fields &fields, const Field *set, const AnyRecord &record)
{
    QStringList names;
    for (const Field *field : fields) {
        if (!(field == set ? field->has(record, 0) : field->hasDefault(record)))
            names.append(field->name);
    }
    return names;
}

// Returns the fields whose value is not empty.
QStringList setFields(const Fields &fields, const AnyRecord &record)
{
    QStringList names;
    for (const Field *field : fields) {
        if (!field->isUnset(record))
            names.append(field->name);
    }
    return names;
}

const QStringList trulyMoved = { "ConfigToolsExtend", "ConfigToolsSplit", "SelectionTreeUnit" };

} // namespace

/// Tests every accessor of the records in the table.
class AccessorsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tableIsWhole()
    {
        QVERIFY(table.fields.size() > 140);
        QCOMPARE(table.records().size(), 20);
        for (const auto &field : table.fields)
            QVERIFY2(field->setterCount() > 0, qPrintable(field->name));
        QCOMPARE(int(std::count_if(table.fields.begin(), table.fields.end(), hasAdder)), 11);
    }

    void everyFieldHasItsDefault()
    {
        for (const auto &field : table.fields)
            QVERIFY2(field->hasDefault(field->makeRecord()), qPrintable(field->name));
    }

    // Unlike those of a field or a dictionary.
    void everyTextBeginsAsNull()
    {
        for (const auto &field : table.fields)
            QVERIFY2(!field->isNotNull(field->makeRecord()), qPrintable(field->name));
    }

    // Set by each setter, read by each getter.
    void everyFieldHoldsWhatWasSet()
    {
        for (const auto &field : table.fields) {
            for (size_t setter = 0; setter < field->setterCount(); ++setter) {
                const AnyRecord record = field->makeRecord();
                for (const int number : { 0, 1, 2 }) {
                    field->set(record, setter, number);
                    QVERIFY2(field->has(record, number), qPrintable(field->name));
                }
            }
        }
    }

    void noFieldTouchesAnother_data() { addRows(table.records()); }
    void noFieldTouchesAnother()
    {
        for (const Field *field : fields())
            QCOMPARE(differences(fields(), field, field->makeRecordWithIt()), QStringList());
    }

    // Tested field by field, so that no field is confused with another.
    void copyHoldsEveryFieldAndItsSourceKeepsIt_data() { addRows(table.records()); }
    void copyHoldsEveryFieldAndItsSourceKeepsIt()
    {
        for (const Field *field : fields()) {
            for (const auto copy : { &Field::copyOf, &Field::assignedFrom }) {
                const AnyRecord source = field->makeRecordWithIt();
                QCOMPARE(differences(fields(), field, (field->*copy)(source)), QStringList());
                QCOMPARE(differences(fields(), field, source), QStringList());
            }
        }
    }

    // Tested without a copy, and with a copy that shares objects with the record. The record can be written to
    // afterwards.
    void assignmentToItselfChangesNothing_data() { addRows(table.records()); }
    void assignmentToItselfChangesNothing()
    {
        for (const Field *field : fields()) {
            const AnyRecord record = field->makeRecordWithIt();
            field->assignToItself(record);
            QCOMPARE(differences(fields(), field, record), QStringList());
            const AnyRecord copy = field->copyOf(record);
            field->assignToItself(record);
            QCOMPARE(differences(fields(), field, record), QStringList());
            QCOMPARE(differences(fields(), field, copy), QStringList());
            field->set(record, 0, 1);
            QVERIFY2(field->has(record, 1), qPrintable(field->name));
            QCOMPARE(differences(fields(), field, copy), QStringList());
        }
    }

    void moveTakesNothingAndItsSourceKeepsEveryField_data() { addRows(recordsThatMoveNothing()); }
    void moveTakesNothingAndItsSourceKeepsEveryField()
    {
        for (const Field *field : fields()) {
            const AnyRecord source = field->makeRecordWithIt();
            QCOMPARE(setFields(fields(), field->movedFrom(source)), QStringList());
            QCOMPARE(differences(fields(), field, source), QStringList());
        }
    }

    void assignmentOfAMovedRecordIsACopy_data() { addRows(recordsThatMoveNothing()); }
    void assignmentOfAMovedRecordIsACopy()
    {
        for (const Field *field : fields()) {
            const AnyRecord source = field->makeRecordWithIt();
            QCOMPARE(differences(fields(), field, field->moveAssignedFrom(source)), QStringList());
            QCOMPARE(differences(fields(), field, source), QStringList());
        }
    }

    // The source loses texts and containers and keeps the rest.
    void trueMoveTakesTheTextsAndCopiesTheRest_data() { addRows(trulyMoved); }
    void trueMoveTakesTheTextsAndCopiesTheRest()
    {
        for (const Field *field : fields()) {
            const Field *kept = field->isEmptyByDefault ? nullptr : field;
            for (const auto move : { &Field::movedFrom, &Field::moveAssignedFrom }) {
                const AnyRecord source = field->makeRecordWithIt();
                QCOMPARE(differences(fields(), field, (field->*move)(source)), QStringList());
                QCOMPARE(differences(fields(), kept, source), QStringList());
            }
        }
    }

    // Entries are appended in order, without a test for duplicates. A record that a move made gets a list with its
    // first entry.
    void everyAdderAppends_data() { addRows(recordsWithAdders()); }
    void everyAdderAppends()
    {
        for (const Field *field : fields()) {
            if (!field->hasAdder())
                continue;
            for (const AnyRecord &record : { field->makeRecord(), field->movedFrom(field->makeRecord()) }) {
                for (const int number : { 2, 0, 0 })
                    field->add(record, number);
                QVERIFY2(field->holdsAdded(record, { 2, 0, 0 }), qPrintable(field->name));
            }
        }
    }

private:
    static void addRows(const QStringList &records)
    {
        QTest::addColumn<QString>("record");
        for (const QString &record : records)
            QTest::newRow(qPrintable(record)) << record;
    }

    // Returns the fields of the record that the row names.
    Fields fields() const
    {
        QFETCH(QString, record);
        return table.fieldsOf(record);
    }

    QStringList recordsThatMoveNothing() const
    {
        QStringList records = table.records();
        for (const QString &record : trulyMoved)
            records.removeOne(record);
        return records;
    }

    QStringList recordsWithAdders() const
    {
        QStringList records;
        for (const auto &field : table.fields) {
            if (field->hasAdder())
                records.append(field->record());
        }
        records.removeDuplicates();
        return records;
    }

    static bool hasAdder(const std::unique_ptr<Field> &field) { return field->hasAdder(); }

    Table table;
};

QTEST_GUILESS_MAIN(AccessorsTest)
#include "AccessorsTest.moc"
