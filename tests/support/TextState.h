#ifndef SUPPORT_TEXTSTATE_H
#define SUPPORT_TEXTSTATE_H

#include <QString>
#include <QtTest>

#include <initializer_list>
#include <utility>

/// Describes a text as seen by a caller that calls `isNull()`: "null", "empty", or the text itself in quotes.
inline QString stateOf(const QString &text)
{
    if (text.isNull())
        return QStringLiteral("null");
    return text.isEmpty() ? QStringLiteral("empty") : QLatin1Char('"') + text + QLatin1Char('"');
}

/// Columns of a table of texts and their expected states.
inline void addTextColumns()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("state");
}

/// Rows of one state. The name of a row is \a subject and its own name.
inline void addTexts(const QByteArray &subject, const char *state,
                     std::initializer_list<std::pair<const char *, QString>> texts)
{
    for (const auto &text : texts)
        QTest::addRow("%s: %s", subject.constData(), text.first) << text.second << QString::fromLatin1(state);
}

/// Returns whether a text has no memory of its own.
inline bool isWithoutMemory(QString text)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return text.data_ptr()->ref.isStatic();
#else
    return !text.data_ptr().d_ptr();
#endif
}

#endif
