// Texts in tests, and the tables of tests/data, which is the current folder.
#pragma once

#include "text/fixed_string.h"

#include <QFile>
#include <QStringList>

#include <gtest/gtest.h>

#include <functional>
#include <map>

inline QString latin1(const char *text) { return QString::fromLatin1(text); }
inline std::string plain(const QString &text) { return text.toUtf8().constData(); }
inline FixedWideString wide(const QString &text) { return fixedText<FixedWideString>(text); }
inline FixedWideString wide(const char *text) { return fixedText<FixedWideString>(text); }

// NOLINTNEXTLINE(readability-identifier-naming): GoogleTest prints a QString with it
inline void PrintTo(const QString &text, std::ostream *out) { *out << '"' << plain(text) << '"'; }

inline QString contentOf(const char *file)
{
    QFile data(latin1(file));
    EXPECT_TRUE(data.open(QIODevice::ReadOnly | QIODevice::Text)) << file;
    return QString::fromUtf8(data.readAll().constData()).trimmed();
}

/// The cells of each row of a table.
inline QList<QStringList> rowsOf(const char *table)
{
    QList<QStringList> rows;
    const QStringList lines = contentOf(table).split(QLatin1Char('\n'));
    for (const QString &line : lines.filter(QRegExp(latin1("^[^#]"))))
        rows << line.split(QRegExp(latin1(" *\\| *")));
    return rows;
}

using TextFunctions = std::map<std::string, std::function<QString(const QString &)>>;

/// Expects the result of each row "function | case | text | result".
inline void expectResults(const char *table, const TextFunctions &functions)
{
    for (const QStringList &row : rowsOf(table)) {
        SCOPED_TRACE(plain(row.join(latin1(" | "))));
        ASSERT_EQ(4, row.size());
        const auto named = functions.find(plain(row.at(0)));
        ASSERT_TRUE(named != functions.end()) << "no test asks for this function";
        EXPECT_EQ(row.at(3), named->second(row.at(2)));
    }
}
