// Texts in tests, and tables of texts with what a function returns for each.
#pragma once

#include <QString>

#include <gtest/gtest.h>

/// Makes GoogleTest print a QString as text.
inline void PrintTo(const QString &text, std::ostream *out) // NOLINT: GoogleTest's name
{
    *out << '"' << text.toUtf8().constData() << '"';
}

inline QString latin1(const char *text) { return QString::fromLatin1(text); }

/// `count` times the letter x.
inline QString repeated(int count) { return QString(count, QLatin1Char('x')); }

struct TextRow
{
    const char *name, *text, *result;
};

/// Expects that the function returns the result of each row for its text.
template <typename Function>
void expectResults(std::initializer_list<TextRow> rows, Function function)
{
    for (const TextRow &row : rows) {
        SCOPED_TRACE(std::string(row.name) + ": " + row.text);
        EXPECT_EQ(latin1(row.result), function(latin1(row.text)));
    }
}
