#include "text/path.h"

namespace {

constexpr char longPathPrefix[] = "\\\\?\\";
constexpr char longNetworkPrefix[] = "\\\\?\\UNC"; // replaces the first backslash
static_assert(sizeof longPathPrefix - 1 == longPathPrefixUnits, "without the terminator");
static_assert(sizeof longNetworkPrefix - 2 == longNetworkPrefixUnits,
              "and without the replaced backslash");
constexpr qint32 parentReferenceLength = 3; // two dots and the separator

// The rules below are templates over QString and FixedWideString; these overloads hide where the
// two differ.

qint32 lengthOf(const QString &text) { return text.size(); }
qint32 lengthOf(const FixedWideString &text) { return text.length; }

char16_t unitAt(const QString &text, qint32 position) { return text.at(position).unicode(); }
char16_t unitAt(const FixedWideString &text, qint32 position) { return text.value[position]; }

qint32 indexOfUnit(const QString &text, char16_t unit, qint32 from)
{
    return text.indexOf(QChar(unit), from);
}
qint32 indexOfUnit(const FixedWideString &text, char16_t unit, qint32 from)
{
    return text.indexOfUnitNoCase(unit, from);
}

qint32 lastIndexOfUnit(const QString &text, char16_t unit) { return text.lastIndexOf(QChar(unit)); }
qint32 lastIndexOfUnit(const FixedWideString &text, char16_t unit)
{
    return text.lastIndexOfUnit(unit, text.length);
}

void cutTo(QString &text, qint32 length) { text.truncate(length); }
void cutTo(FixedWideString &text, qint32 length) { text.setLength(static_cast<qint16>(length)); }

void dropFirst(QString &text, qint32 count) { text.remove(0, count); }
void dropFirst(FixedWideString &text, qint32 count) { text.removeRange(0, count); }

void append(QString &text, const QString &more) { text += more; }
void append(FixedWideString &text, const FixedWideString &more)
{
    text.appendUnits(more.value, more.length);
}

void appendUnit(QString &text, char16_t unit) { text += QChar(unit); }
void appendUnit(FixedWideString &text, char16_t unit) { text.appendUnits(&unit, 1); }

void collapsePairs(QString &text, char16_t unit)
{
    text.replace(QString(2, QChar(unit)), QString(QChar(unit)));
}
void collapsePairs(FixedWideString &text, char16_t unit)
{
    FixedWideString one;
    appendUnit(one, unit);
    FixedWideString two = one;
    appendUnit(two, unit);
    text.replaceAllNoCase(two, one);
}

template <typename Text>
bool hasUnitAt(const Text &text, qint32 position, char16_t unit)
{
    return position >= 0 && position < lengthOf(text) && unitAt(text, position) == unit;
}

template <typename Text>
bool endsWithUnit(const Text &text, char16_t unit)
{
    return hasUnitAt(text, lengthOf(text) - 1, unit);
}

template <typename Text>
bool hasParentReferenceAt(const Text &path, qint32 position, char16_t separator)
{
    return hasUnitAt(path, position, u'.') && hasUnitAt(path, position + 1, u'.')
           && hasUnitAt(path, position + 2, separator);
}

template <typename Text>
qint32 indexOfParentReference(const Text &path, char16_t separator)
{
    for (qint32 i = 0; i + parentReferenceLength <= lengthOf(path); ++i)
        if (hasParentReferenceAt(path, i, separator))
            return i;
    return -1;
}

/// Whether `head` is a placeholder, "<" name ">", with or without a trailing separator.
template <typename Text>
bool isPlaceholder(Text head, char16_t separator)
{
    if (!hasUnitAt(head, 0, u'<'))
        return false;
    if (endsWithUnit(head, separator))
        cutTo(head, lengthOf(head) - 1);
    return endsWithUnit(head, u'>') && lastIndexOfUnit(head, separator) < 0;
}

/// Length of the beginning that going up never cuts: the drive, or server and share. -1 for a
/// network path that ends before the end of its share.
template <typename Text>
qint32 protectedLength(const Text &path, char16_t separator)
{
    if (!hasUnitAt(path, 1, separator))
        return hasUnitAt(path, 1, u':') ? 2 : 0;
    const qint32 endOfServer = indexOfUnit(path, separator, 2);
    return indexOfUnit(path, separator, endOfServer + 1);
}

template <typename Text>
void goUpOneFolder(Text &path, char16_t separator)
{
    if (lengthOf(path) < 3)
        return;
    if (endsWithUnit(path, separator))
        cutTo(path, lengthOf(path) - 1);
    const qint32 start = protectedLength(path, separator);
    if (start < 0)
        return;
    const qint32 last = lastIndexOfUnit(path, separator);
    if (last >= start) {
        cutTo(path, last);
    } else if (last < 0) {
        cutTo(path, 0); // a bare drive has no parent
        return;
    }
    appendUnit(path, separator);
}

template <typename Text>
void normalize(Text &path, char16_t separator)
{
    const bool isNetworkPath = hasUnitAt(path, 0, separator) && hasUnitAt(path, 1, separator);
    collapsePairs(path, separator);
    if (isNetworkPath) {
        Text restored;
        appendUnit(restored, separator);
        append(restored, path);
        path = restored;
    }

    const qint32 first = indexOfParentReference(path, separator);
    if (first < 0)
        return;
    Text head = path;
    cutTo(head, first);
    if (isPlaceholder(head, separator))
        return;
    dropFirst(path, first);
    while (hasParentReferenceAt(path, 0, separator)) {
        dropFirst(path, parentReferenceLength);
        goUpOneFolder(head, separator);
    }
    append(head, path);
    path = head;
}

} // namespace

QString normalizePath(QString path)
{
    normalize(path, path.contains(backslash) ? backslashUnit : slashUnit);
    return path;
}

FixedWideString normalizePathFixed(FixedWideString &path)
{
    if (path.length >= 2)
        normalize(path.toBackslashes(), backslashUnit);
    return path;
}

QString parentFolder(QString path, QChar separator)
{
    goUpOneFolder(path, separator.unicode());
    return path;
}

FixedWideString parentFolderFixed(FixedWideString &path)
{
    goUpOneFolder(path, backslashUnit);
    return path;
}

QString withTrailingBackslash(const QString &path)
{
    const bool endsWithSlash = path.endsWith(QLatin1Char(slashUnit));
    return endsWithSlash || path.endsWith(backslash) ? path : path + backslash;
}

QString toBackslashPath(const QString &path)
{
    return QString(path).replace(QLatin1Char(slashUnit), backslash);
}

qint32 lastBackslash(const FixedWideString &path) { return lastIndexOfUnit(path, backslashUnit); }

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
