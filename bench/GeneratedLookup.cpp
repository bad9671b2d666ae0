#include "GeneratedLookup.h"

#include <QFile>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

void generateLookup(LookupKeys keys, int lines, const QString &path)
{
    constexpr int firstKey = 100000000; // first number of nine digits
    constexpr int keyStep = 7;
    constexpr int values = 1000;
    constexpr qint64 valueStep = 7919; // a prime number, so that no value occurs twice
    constexpr unsigned percent = 100;
    constexpr unsigned faults = 5;
    std::mt19937 random(1); // NOLINT: the file must be the same every time
    std::vector<int> numbers(static_cast<size_t>(lines));
    std::iota(numbers.begin(), numbers.end(), 0);
    if (keys != LookupKeys::ascending)
        std::shuffle(numbers.begin(), numbers.end(), random);

    QByteArray text;
    for (size_t line = 0; line < numbers.size(); ++line) {
        const unsigned draw = keys == LookupKeys::faulty ? unsigned(random()) % percent : percent;
        const size_t source = draw < faults && line > 0 ? random() % line : line;
        text += QByteArray::number(firstKey + keyStep * numbers[source]);
        if (draw >= faults && draw < 2 * faults && line > 0)
            text += '0';
        text += " Label number ";
        text += QByteArray::number(keys == LookupKeys::named ? qint64(line) * valueStep % lines
                                                             : qint64(random() % values));
        text += '\n';
    }
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("%s cannot be written", qPrintable(path));
}
