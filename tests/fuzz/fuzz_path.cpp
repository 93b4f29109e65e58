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
    const QString converted = toBackslashPath(path);
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
    require((path + backslash).startsWith(parent));
    auto fixed = fixedText<FixedWideString>(path);
    if (bothAgree(path))
        require(parentFolderFixed(fixed).toQString() == parent);
    const QString folder = folderOfPath(path);
    require(path.size() < 3 ? folder == path : folder.endsWith(backslash));
    require((path + backslash).startsWith(folder));
    require(path.startsWith(freeSpaceRoot(path)));
    const FixedWideString from = fixed;
    require(withLongPathPrefix(fixed, from).toQString().startsWith(QLatin1String("\\\\?\\")));
}

void splitWildcard(const QString &path)
{
    const qint32 star = path.indexOf(QLatin1Char('*'));
    if (star < 0)
        return;
    const WildcardParts parts = splitAtWildcard(path);
    require(parts.base == folderOfPath(path.left(star)));
    require(parts.nameStart.isEmpty() || parts.base + parts.nameStart == path.left(star));
    require(path.mid(star + 1) == parts.nameEnd + parts.rest);
    require(!parts.nameEnd.contains(backslash));
    require(parts.rest.isEmpty() || parts.rest.startsWith(backslash));
}

} // namespace

int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    const QString path = takeText(data, 600);
    normalize(path);
    goUp(path);
    splitWildcard(path);
    return 0;
}
