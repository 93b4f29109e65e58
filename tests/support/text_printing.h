// Lets GoogleTest print our kinds of text, and makes them from literals.
#pragma once

#include "text/fixed_string.h"

#include <QStringList>

#include <gtest/gtest.h>

inline std::ostream &operator<<(std::ostream &out, const QString &text)
{
    return out << '"' << text.toUtf8().constData() << '"';
}

/// Latin-1 text as a QString.
inline QString q(const char *text) { return QString::fromLatin1(text); }

/// `count` times the letter.
inline QString repeated(int count, char letter = 'x')
{
    return QString(count, QLatin1Char(letter));
}

inline FixedWideString wide(const QString &text) { return fixedText<FixedWideString>(text); }

/// The rows of a table of words. "''" is an empty word, "~" a blank in one, "^" a line feed, and
/// "->" between words is for the eye only.
inline QList<QStringList> rowsOf(int columns, const char *table)
{
    QList<QStringList> rows;
    for (QString word : q(table).simplified().split(QLatin1Char(' '))) {
        if (word == q("->"))
            continue;
        if (rows.isEmpty() || rows.last().size() == columns)
            rows.append(QStringList());
        word.replace(q("''"), q("")).replace(q("~"), q(" ")).replace(q("^"), q("\n"));
        rows.last().append(word);
    }
    EXPECT_TRUE(!rows.isEmpty() && rows.last().size() == columns) << table;
    return rows;
}
