#ifndef CONVERT_RANDOMDICTIONARY_H
#define CONVERT_RANDOMDICTIONARY_H

#include "model/Layout.h"

#include <QRandomGenerator>

/// Random dictionaries that both forms of CSPro can hold. The same seed always makes the same one.
class RandomDictionary
{
public:
    explicit RandomDictionary(quint32 seed)
        : random(seed)
    {
    }

    vanlayout::Layout make()
    {
        using namespace vanlayout;
        Layout layout;
        layout.format = Format::CSProText;
        layout.formatVersion = QStringLiteral("7.7");
        layout.encoding = QStringLiteral("utf-8");
        addLanguages(layout);
        layout.name = name();
        layout.labels = labels();
        layout.note = note();
        if (some())
            layout.recordType = RecordTypeColumns{ below(2) == 0 ? 1 : 3, 1 + below(3) };
        layout.relativePositions = some();
        layout.zeroFill = some();
        layout.decimalMark = some();
        layout.editable = below(9) != 0;
        const int levels = 1 + below(2);
        for (int level = 0; level < levels; ++level)
            layout.levels.append(makeLevel(layout));
        finish(layout);
        return layout;
    }

private:
    int below(int bound) { return random.bounded(bound); }
    bool some() { return below(2) == 0; }
    bool rarely() { return below(6) == 0; }

    QString name() { return QStringLiteral("N%1").arg(++names); }

    QString text()
    {
        static const QStringList words = {
            QStringLiteral("age"),       QStringLiteral("été"),     QStringLiteral("=;:"),
            QStringLiteral("\"so\""),    QStringLiteral("don't"),   QStringLiteral("возраст"),
            QStringLiteral("年齢"),      QStringLiteral("[x]"),     QStringLiteral("a & b"),
            QStringLiteral("tea &"),     QStringLiteral("😀"),       QStringLiteral("~x"),
            QStringLiteral("#1 .5 /"),   QStringLiteral("\\ back"), QStringLiteral("{\"a\": 1}"),
            QStringLiteral("١٢"),        QStringLiteral("x  y"),    QStringLiteral("\u2028end"),
            QStringLiteral("tab\there"), QStringLiteral("Value=1"),
        };
        QStringList chosen;
        for (int count = 1 + below(4); count > 0; --count)
            chosen.append(words.at(below(words.size())));
        return chosen.join(QLatin1Char(' '));
    }

    void addLanguages(vanlayout::Layout &layout)
    {
        const QStringList codes = { QStringLiteral("EN"), QStringLiteral("FR"), QStringLiteral("SW") };
        languages = codes.mid(0, below(4));
        for (const QString &code : qAsConst(languages))
            layout.languages.append({ code, text() });
    }

    // A single text has the primary language, as it has when it is read from the text form.
    vanlayout::Labels labels()
    {
        vanlayout::Labels made;
        if (rarely())
            return made;
        const int count = 1 + below(std::max(int(languages.size()), 1));
        for (int part = 0; part < count; ++part)
            made.parts.append({ languages.value(part), part > 0 && rarely() ? QString() : text() });
        if (made.parts.last().text.isEmpty())
            made.parts.last().text = QStringLiteral("last");
        return made;
    }

    QString note()
    {
        if (below(10) != 0)
            return QString();
        QString made;
        for (int count = 1 + below(8); count > 0; --count)
            made += text() + (rarely() ? QStringLiteral("\n") : QStringLiteral(" "));
        made = made.trimmed();
        return made.startsWith(QLatin1Char('~')) ? QStringLiteral("x ") + made : made;
    }

    template <typename Element> Element named()
    {
        Element element;
        element.name = name();
        element.labels = labels();
        element.note = note();
        if (rarely())
            element.aliases = QStringList{ name(), name() };
        return element;
    }

    QVector<vanlayout::OccurrenceLabel> occurrenceLabels(int occurrences)
    {
        QVector<vanlayout::OccurrenceLabel> made;
        for (int occurrence = 1; occurrence <= occurrences; ++occurrence) {
            vanlayout::Labels text = labels();
            if (!text.isEmpty())
                made.append({ occurrence, text });
        }
        return made;
    }

    vanlayout::Level makeLevel(const vanlayout::Layout &layout)
    {
        auto level = named<vanlayout::Level>();
        const int ids = 1 + below(3);
        for (int id = 0; id < ids; ++id)
            level.ids.append(makeItem(false));
        const int records = 1 + below(2);
        for (int index = 0; index < records; ++index) {
            auto record = named<vanlayout::Record>();
            if (layout.recordType)
                record.recordType
                    = QString::number(below(9)).leftJustified(layout.recordType->length, QLatin1Char(' '));
            record.required = some();
            record.maximum = some() ? 1 : 2 + below(5);
            if (record.maximum > 1 && rarely())
                record.occurrenceLabels = occurrenceLabels(record.maximum);
            addItems(record);
            level.records.append(record);
        }
        return level;
    }

    void addItems(vanlayout::Record &record)
    {
        const int count = below(5);
        for (int index = 0; index < count; ++index) {
            vanlayout::Item item = makeItem(true);
            record.items.append(item);
            if (!rarely() || item.length < 2)
                continue;
            vanlayout::Item part = makeItem(false);
            part.isSubitem = true;
            part.subitemOf = item.name;
            part.length = 1;
            part.decimals = 0;
            part.decimalMark = false;
            part.valueSets.clear();
            record.items.append(part);
        }
    }

    vanlayout::Item makeItem(bool mayRepeat)
    {
        auto item = named<vanlayout::Item>();
        item.type = some() ? vanlayout::itemtype::numeric() : vanlayout::itemtype::alpha();
        item.length = 1 + below(8);
        if (mayRepeat && rarely()) {
            item.occurrences = 2 + below(4);
            item.occurrenceLabels = occurrenceLabels(item.occurrences);
        }
        if (item.isNumeric()) {
            item.zeroFill = some();
            item.decimals = mayRepeat && rarely() ? below(item.length) : 0;
            item.decimalMark = item.decimals > 0 && some();
        }
        if (rarely())
            item.capture = vanlayout::Capture{ QStringLiteral("radioButton"), QString() };
        else if (rarely())
            item.capture = vanlayout::Capture{ QStringLiteral("date"), QStringLiteral("YYYYMMDD") };
        const int sets = below(3);
        for (int set = 0; set < sets; ++set)
            item.valueSets.append(makeValueSet(item));
        return item;
    }

    vanlayout::ValueSet makeValueSet(const vanlayout::Item &item)
    {
        auto set = named<vanlayout::ValueSet>();
        const int count = below(4);
        for (int value = 0; value < count; ++value)
            set.values.append(makeValue(item));
        if (rarely() && !set.values.isEmpty())
            set.link = QString::number(below(1 << 30));
        return set;
    }

    QString code(const vanlayout::Item &item)
    {
        if (item.isNumeric())
            return QString::number(below(2000) - 500);
        static const QStringList codes = { QStringLiteral("A"),   QStringLiteral("b c"), QStringLiteral("'"),
                                           QStringLiteral("1"),   QStringLiteral("é"),   QStringLiteral(" x"),
                                           QStringLiteral("\"q"), QStringLiteral(":"),   QStringLiteral("12-3") };
        return codes.at(below(codes.size())).leftJustified(item.length, QLatin1Char(' '));
    }

    vanlayout::Value makeValue(const vanlayout::Item &item)
    {
        using vanlayout::Special;
        vanlayout::Value value;
        value.labels = labels();
        value.note = note();
        value.special = !item.isNumeric() ? Special::None
            : rarely()                    ? Special::Missing
            : rarely()                    ? Special::NotApplicable
                                          : Special::None;
        if (rarely())
            value.image = some() ? QStringLiteral(".\\images\\a b.jpg") : QStringLiteral("..\\x.png");
        if (rarely())
            value.textColor = QStringLiteral("#ff0000");
        if (value.special == Special::NotApplicable) {
            value.ranges.append({ QString(item.length, QLatin1Char(' ')), QString() });
            return value;
        }
        const int count = 1 + below(3);
        for (int range = 0; range < count; ++range)
            value.ranges.append({ code(item), item.isNumeric() && rarely() ? code(item) : QString() });
        return value;
    }

    // Positions as CSPro lays them out, or further to the right in some records of a dictionary with absolute ones.
    void finish(vanlayout::Layout &layout)
    {
        const int typeStart = layout.recordType ? layout.recordType->start : 0;
        bool isTypePlaced = typeStart == 0;
        int next = 1;
        for (vanlayout::Level &level : layout.levels) {
            for (vanlayout::Item &id : level.ids) {
                if (!isTypePlaced && typeStart <= next) {
                    isTypePlaced = true;
                    layout.recordType->start = next;
                    next += layout.recordType->length;
                }
                id.start = next;
                next += id.length;
            }
        }
        if (!isTypePlaced) {
            layout.recordType->start = next;
            next += layout.recordType->length;
        }
        for (vanlayout::Level &level : layout.levels) {
            for (vanlayout::Record &record : level.records)
                placeItems(record, next + (rarely() ? 4 : 0), next);
        }
    }

    static void placeItems(vanlayout::Record &record, int next, int least)
    {
        int end = least - 1;
        const vanlayout::Item *parent = nullptr;
        for (vanlayout::Item &item : record.items) {
            if (item.isSubitem) {
                item.start = parent->start + parent->length - 1;
                continue;
            }
            item.start = next;
            next += item.length * item.occurrences;
            end = next - 1;
            parent = &item;
        }
        record.length = std::max(end, 1);
    }

    QRandomGenerator random;
    QStringList languages;
    int names = 0;
};

#endif
