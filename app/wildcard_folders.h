// The folders that a directory argument with "*" stands for.
#pragma once

#include <QString>

/// One step of an expansion: the path in front of, in and behind the component with the first "*".
struct WildcardParts
{
    QString base;      // the folder to look in, with its closing backslash; empty for a bare "*"
    QString nameStart; // what the component has in front of the "*"
    QString nameEnd;   // and behind it
    QString rest;      // from the next backslash on
};

/// Splits a path that holds a "*". Only the backslash separates.
WildcardParts splitAtWildcard(const QString &path);

/// Runs runFolder on every folder that the path matches, depth first and in the platform's order;
/// on the path itself when it holds no "*". A folder that can't be listed, or a "*" that matches
/// none, gives no output.
///
/// Text between a "*" and the next backslash does not restrict the folders: a*b matches every
/// folder that begins with a. That is deliberate, no full pattern is meant.
void expandWildcardFolders(QString path, const qint32 &daysOld, const bool &verbose);
