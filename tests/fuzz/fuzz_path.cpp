// Paths as text: both kinds of text must agree, and what the rules promise must hold.
#include "app/free_space_root.h"
#include "app/wildcard_parts.h"
#include "text/path.h"

#include "fuzz_support.h"

namespace {

const QChar backslash = QLatin1Char('\\');

/// Whether both kinds of text must give one result. A fixed string is cut, and takes a search start
/// at or behind its end for 0, which shows where a network path ends with its server.
bool bothAgree(const QString &path)
{
    const bool endsWithServer = path.size() > 1 && path.at(1) == backslash
                                && path.indexOf(backslash, path.indexOf(backslash, 2) + 1) < 0;
    return path.size() < FixedWideString::capacity && !endsWithServer;
}

void normalize(const QString &path)
{
    QString converted = toBackslashPath(path);
    require(!converted.contains(QLatin1Char('/')) && converted.size() == path.size());
    auto fixed = fixedText<FixedWideString>(path);
    const FixedWideString result = normalizePathFixed(fixed);
    require(result.toQString() == fixed.toQString());
    if (path.size() > 1 && converted.contains(backslash) && bothAgree(converted))
        require(result.toQString() == normalizePath(converted));
    require(normalizePath(path).size() <= path.size() + 1);
}

void goUp(const QString &path)
{
    const QString parent = parentFolder(path, backslash);
    require(parent.size() <= path.size() + 1);
    if (path.size() > 2 && parent.endsWith(backslash))
        require(path.startsWith(parent.left(parent.size() - 1)));
    auto fixed = fixedText<FixedWideString>(path);
    if (bothAgree(path))
        require(parentFolderFixed(fixed).toQString() == parent);
}

void takeFolder(const QString &path)
{
    const QString folder = folderOfPath(path);
    require(path.size() < 3 ? folder == path : folder.endsWith(backslash));
    require((path + backslash).startsWith(folder));
    require(closedFolder(path).startsWith(path));
    require(path.startsWith(freeSpaceRoot(path)));
}

void putPrefix(const QString &path)
{
    FixedWideString prefixed;
    withLongPathPrefix(prefixed, fixedText<FixedWideString>(path));
    const bool isNetworkPath = path.startsWith(QLatin1String("\\\\"));
    const QString expected = isNetworkPath ? QLatin1String("\\\\?\\UNC") + path.left(500).mid(1)
                                           : QLatin1String("\\\\?\\") + path.left(500);
    require(prefixed.toQString() == expected.left(FixedWideString::capacity));
}

void splitWildcard(const QString &path)
{
    if (!path.contains(QLatin1Char('*')))
        return;
    const WildcardParts parts = splitAtWildcard(path);
    const qint32 star = path.indexOf(QLatin1Char('*'));
    // The base ends behind the last backslash, where there is one behind a drive's place; otherwise
    // a backslash is put behind it.
    const qint32 last = path.left(star).lastIndexOf(backslash);
    if (last > 1 && !path.startsWith(QLatin1String("\\\\")) && path.at(1) != backslash)
        require(parts.base == path.left(last + 1)
                && parts.nameStart == path.mid(last + 1, star - last - 1));
    require(parts.nameStart.isEmpty() || parts.base + parts.nameStart == path.left(star));
    require(path.mid(star + 1) == parts.nameEnd + parts.rest);
    require(!parts.nameEnd.contains(backslash));
    require(parts.rest.isEmpty() || parts.rest.startsWith(backslash));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size);
int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    const QString path = takeText(data, 600);
    normalize(path);
    goUp(path);
    takeFolder(path);
    putPrefix(path);
    splitWildcard(path);
    return 0;
}
