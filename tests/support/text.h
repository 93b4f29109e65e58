// Texts in tests, and the tables of tests/data, which is the current folder.
#pragma once

#include "text/fixed_string.h"

#include <QFile>
#include <QStringList>

#include <gtest/gtest.h>

inline QString latin1(const char *text) { return QString::fromLatin1(text); }

// Texts that GoogleTest can print.
inline std::string plain(const QString &text) { return text.toUtf8().constData(); }
template <typename Unit, qint32 Capacity>
std::string plain(const FixedString<Unit, Capacity> &text)
{
    return plain(text.toQString());
}

inline QString contentOf(const char *file)
{
    QFile data(latin1(file));
    EXPECT_TRUE(data.open(QIODevice::ReadOnly | QIODevice::Text)) << file;
    return QString::fromUtf8(data.readAll().constData()).trimmed();
}

inline QStringList linesOf(const char *file) { return contentOf(file).split(QLatin1Char('\n')); }

/// Expects from `function` the results of its rows "name | case | text | result".
template <typename Function>
void expectResults(const char *name, Function function)
{
    int count = 0;
    for (const QString &line : linesOf("text_functions.txt")) {
        const QStringList row = line.split(QLatin1Char('|'));
        if (row.at(0).trimmed() != latin1(name))
            continue;
        EXPECT_EQ(plain(row.at(3).trimmed()), plain(function(row.at(2).trimmed()))) << plain(line);
        ++count;
    }
    EXPECT_NE(0, count) << name;
}
