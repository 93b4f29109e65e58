#include "text/path.h"

namespace {

const QChar slash = QLatin1Char(slashUnit);
constexpr char longPathPrefix[] = "\\\\?\\";
constexpr char longNetworkPrefix[] = "\\\\?\\UNC"; // replaces the first backslash

/// Whether `head` is a placeholder, "<" name ">", with or without a trailing separator.
bool isPlaceholder(QString head, QChar separator)
{
    if (head.endsWith(separator))
        head.chop(1);
    return head.startsWith(QLatin1Char('<')) && head.endsWith(QLatin1Char('>'))
           && !head.contains(separator);
}

/// Length of the beginning that going up never cuts: the drive, or server and share. -1 for a bare
/// share, 0 for a bare server, 1 for a\b.
qint32 protectedLength(const QString &path, QChar separator)
{
    if (path.at(1) != separator)
        return path.at(1) == QLatin1Char(':') ? 2 : 0;
    const qint32 endOfServer = path.indexOf(separator, 2);
    // Frozen: if endOfServer is -1, this search starts at 0 and finds the first separator.
    return path.indexOf(separator, endOfServer + 1);
}

QString normalize(QString path, QChar separator)
{
    const QString pair(2, separator);
    const bool isNetworkPath = path.startsWith(pair);
    path.replace(pair, QString(separator));
    if (isNetworkPath)
        path.prepend(separator);

    const QString parentReference = QString::fromLatin1("..") + separator;
    const qint32 first = path.indexOf(parentReference);
    if (first < 0 || isPlaceholder(path.left(first), separator))
        return path;
    QString head = path.left(first);
    QString rest = path.mid(first);
    while (rest.startsWith(parentReference)) {
        rest.remove(0, parentReference.size());
        head = parentFolder(head, separator);
    }
    return head + rest;
}

} // namespace

QString normalizePath(QString path)
{
    return normalize(path, path.contains(backslash) ? backslash : slash);
}

FixedWideString normalizePathFixed(FixedWideString &path)
{
    if (path.length >= 2)
        path.assignQString(normalize(path.toBackslashes().toQString(), backslash));
    return path;
}

QString parentFolder(QString path, QChar separator)
{
    if (path.size() < 3)
        return path;
    if (path.endsWith(separator))
        path.chop(1);
    const qint32 start = protectedLength(path, separator);
    if (start < 0)
        return path;
    const qint32 last = path.lastIndexOf(separator);
    if (last < 0)
        return QString(); // a bare drive has no parent
    if (last >= start)
        path.truncate(last);
    return path + separator;
}

FixedWideString parentFolderFixed(FixedWideString &path)
{
    path.assignQString(parentFolder(path.toQString(), backslash));
    return path;
}

QString withTrailingBackslash(const QString &path)
{
    const bool endsWithSlash = path.endsWith(slash);
    return endsWithSlash || path.endsWith(backslash) ? path : path + backslash;
}

QString toBackslashPath(const QString &path) { return QString(path).replace(slash, backslash); }

qint32 lastBackslash(const FixedWideString &path)
{
    return path.lastIndexOfUnit(backslashUnit, path.length);
}

QString folderOfPath(QString path)
{
    if (path.size() < 3 || path.endsWith(backslash))
        return path;
    const qint32 last = path.lastIndexOf(backslash);
    const bool isBareShare = path.at(1) == backslash && path.indexOf(backslash, 2) == last;
    if (last > 1 && !isBareShare)
        path.truncate(last);
    path += backslash;
    return path;
}

const FixedWideString &withLongPathPrefix(FixedWideString &destination,
                                          const FixedWideString &source)
{
    destination.assign(source);
    if (source.isUncPath()) {
        destination.removeRange(0, 1);
        destination.insertAt(0, fixedText<FixedWideString>(longNetworkPrefix));
    } else {
        destination.insertAt(0, fixedText<FixedWideString>(longPathPrefix));
    }
    return destination;
}
