// A path with "*" as text: what its first component with one consists of.
#pragma once

#include <QString>

/// One step of an expansion: the path in front of, in and behind the component with the first "*".
struct WildcardParts
{
    QString base;      // the folder to look in; closed, unless it has fewer than 3 units
    QString nameStart; // what the component has in front of the "*"
    QString nameEnd;   // and behind it
    QString rest;      // from the next backslash on
};

/// Splits a path that holds a "*". Only the backslash separates.
WildcardParts splitAtWildcard(const QString &path);
