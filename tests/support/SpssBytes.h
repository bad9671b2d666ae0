#ifndef SUPPORT_SPSSBYTES_H
#define SUPPORT_SPSSBYTES_H

#include <QByteArray>
#include <QtEndian>

#include <initializer_list>

/// Assembles an SPSS file record by record, valid or not.
class SpssBytes
{
public:
    // types of records
    static constexpr int variableRecord = 2;
    static constexpr int labelsRecord = 3;
    static constexpr int labelledVariablesRecord = 4;
    static constexpr int documentsRecord = 6;
    static constexpr int extensionRecord = 7;
    static constexpr int endRecord = 999;
    // types of extension records
    static constexpr int longNames = 13;
    static constexpr int veryLongTexts = 14;
    static constexpr int attributes = 18;
    static constexpr int longTextLabels = 21;
    static constexpr int longTextMissing = 22;

    explicit SpssBytes(bool bigEndian = false)
        : isBigEndian(bigEndian)
    {
        constexpr int layoutCode = 2;
        constexpr int unknownCount = -1;
        bytes = QByteArray("$FL2").leftJustified(64, ' ');
        numbers({ layoutCode, unknownCount, 0, 0, 0 });
        bytes += QByteArray(8, '\0') + "01 Jan 2000:00:00" + QByteArray(67, ' ');
    }

    void number(quint32 value)
    {
        char four[4];
        if (isBigEndian)
            qToBigEndian(value, four);
        else
            qToLittleEndian(value, four);
        bytes.append(four, 4);
    }
    void numbers(std::initializer_list<qint32> list)
    {
        for (const qint32 value : list)
            number(quint32(value));
    }
    /// Appends a numeric variable up to its name; a label and missing values may follow.
    void variable(const QByteArray &name, int hasLabel = 0, int missingValues = 0, int width = 0)
    {
        const int format = width > 0 ? 0x010000 | width << 8 : 0x050800;
        numbers({ variableRecord, width, hasLabel, missingValues, format, format });
        bytes += name.leftJustified(8, ' ');
    }
    /// Appends variables with the names of nameOf(); some have further records unless they \a areBare.
    void variables(int count, bool areBare = true)
    {
        bytes.reserve(bytes.size() + count * 32 + 1000);
        for (int i = 0; i < count; ++i) {
            const bool hasMore = !areBare && i % 1000 == 0;
            variable(nameOf(i), hasMore, hasMore ? -2 : 0);
            if (!hasMore)
                continue;
            label("Label");
            bytes += QByteArray(16, '\0');
        }
    }
    void label(const QByteArray &text)
    {
        numbers({ int(text.size()) });
        bytes += text + QByteArray((4 - text.size() % 4) % 4, '\0');
    }
    /// Appends a further part of a text.
    void part(int hasLabel = 0, int missingValues = 0)
    {
        numbers({ variableRecord, -1, hasLabel, missingValues, 0, 0 });
        bytes += QByteArray(8, ' ');
    }
    void parts(int count)
    {
        for (int i = 0; i < count; ++i)
            part();
    }
    void valueLabels()
    {
        numbers({ labelsRecord, 2 });
        bytes += QByteArray(8, '\0') + '\3' + "Yes" + QByteArray(4, ' ');
        bytes += QByteArray(8, '\1') + '\7' + "Perhaps";
        numbers({ labelledVariablesRecord, 1, 1 });
    }
    void documents()
    {
        numbers({ documentsRecord, 2 });
        bytes += QByteArray(160, ' ');
    }
    void extension(int subtype, const QByteArray &content = "V0=longname")
    {
        numbers({ extensionRecord, subtype, 1, int(content.size()) });
        bytes += content;
    }
    void end() { numbers({ endRecord, 0 }); }

    static QByteArray nameOf(int index) { return "V" + QByteArray::number(index, 36).toUpper(); }

    QByteArray bytes;

private:
    bool isBigEndian;
};

#endif
