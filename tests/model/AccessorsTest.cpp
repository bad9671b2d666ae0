#ifdef __GNUC__
#pragma GCC diagnostic ignored "-Wdelete-non-virtual-dtor" // entities are deleted as what they are
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

#include <functional>
#include <memory>
#include <type_traits>
#include <vector>

namespace
{

template <typename Value> using Held = Value;

// Values that no field begins with: three a type, of which no two neighbours are the same.
template <typename Value> Value sample(int number)
{
    if constexpr (std::is_pointer_v<Value>) {
        // Held, and never followed.
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
        choice.setStart(number + 1);
        return choice;
    } else if constexpr (std::is_same_v<Value, TVpVariable>) {
        TVpVariable variable;
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
    if constexpr (std::is_same_v<Value, VarWipChoice> || std::is_same_v<Value, TVpVariable>)
        return a.getStart() == b.getStart();
    else
        return a == b;
}

/// One field of a record, whatever the types are.
class Field
{
public:
    virtual ~Field() = default;
    virtual bool hasDefault(void *record) const = 0;
    virtual void set(void *record, size_t setter, int number) const = 0;
    virtual bool has(void *record, int number) const = 0;
    virtual std::shared_ptr<void> makeRecord() const = 0;

    std::string name;
    size_t setterCount = 0;
};

template <typename Record, typename Value> class FieldOf : public Field
{
public:
    bool hasDefault(void *record) const override
    {
        return std::all_of(getters.begin(), getters.end(), [&](const auto &getter) {
            const Value value = getter(*static_cast<Record *>(record));
            return isNew ? !isSame(value, initial) : isSame(value, initial);
        });
    }
    void set(void *record, size_t setter, int number) const override
    {
        setters.at(setter)(*static_cast<Record *>(record), value(number));
    }
    bool has(void *record, int number) const override
    {
        Value expected = value(number);
        if (shown)
            expected = shown(expected);
        return std::all_of(getters.begin(), getters.end(), [&](const auto &getter) {
            return isSame(Value(getter(*static_cast<Record *>(record))), expected);
        });
    }
    std::shared_ptr<void> makeRecord() const override { return std::make_shared<Record>(); }

    // `checked` holds no more than a flag.
    Value value(int number) const
    {
        if constexpr (std::is_same_v<Value, int>) {
            if (name == "TVpVariable.checked")
                return number != 1;
        }
        return sample<Value>(number);
    }

    Value initial;
    bool isNew = false; ///< the default is an object of its own
    std::vector<std::function<Value(Record &)>> getters;
    std::vector<std::function<void(Record &, const Value &)>> setters;
    std::function<Value(const Value &)> shown;
};

/// The table, as objects.
class Table
{
public:
    Table()
    {
#include "accessor-rows.inc"
        for (const auto &finish : finishers)
            finish();
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
        FieldOf<Record, Value> &added = *field;
        fields.push_back(std::move(field));
        finishers.push_back([&added] { added.setterCount = added.setters.size(); });
        return added;
    }

    std::vector<std::function<void()>> finishers;
};

std::string classOf(const Field &field)
{
    return field.name.substr(0, field.name.find('.'));
}

} // namespace

/// Every accessor of the records, from the table.
class AccessorsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tableIsWhole()
    {
        QVERIFY(table.fields.size() > 140);
        for (const auto &field : table.fields)
            QVERIFY2(field->setterCount > 0, field->name.c_str());
    }

    void everyFieldHasItsDefault()
    {
        for (const auto &field : table.fields)
            QVERIFY2(field->hasDefault(field->makeRecord().get()), field->name.c_str());
    }

    // By each setter, read by each getter.
    void everyFieldHoldsWhatWasSet()
    {
        for (const auto &field : table.fields) {
            for (size_t setter = 0; setter < field->setterCount; ++setter) {
                const std::shared_ptr<void> record = field->makeRecord();
                for (const int number : { 0, 1, 2 }) {
                    field->set(record.get(), setter, number);
                    QVERIFY2(field->has(record.get(), number), field->name.c_str());
                }
            }
        }
    }

    void noFieldTouchesAnother()
    {
        for (const auto &field : table.fields) {
            const std::shared_ptr<void> record = field->makeRecord();
            field->set(record.get(), 0, 0);
            for (const auto &other : table.fields) {
                if (other != field && classOf(*other) == classOf(*field))
                    QVERIFY2(other->hasDefault(record.get()), (field->name + ' ' + other->name).c_str());
            }
        }
    }

private:
    Table table;
};

QTEST_GUILESS_MAIN(AccessorsTest)
#include "AccessorsTest.moc"
