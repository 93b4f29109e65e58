#include "app/wildcard_folders.h"

#include "app/folder_run.h"
#include "sweep/dir_listing.h"
#include "text/path.h"

namespace {

/// A path split at its first "*".
struct WildcardParts
{
    QString base;      // the folder to list
    QString nameStart; // text of the component before the "*"
    QString nameEnd;   // and after it
    QString rest;      // from the next backslash on
};

WildcardParts splitAtWildcard(const QString &path)
{
    const qint32 star = path.indexOf(asterisk);
    const QString prefix = path.left(star);
    const QString afterStar = path.mid(star + 1);
    const qint32 separator = afterStar.indexOf(backslash);

    WildcardParts parts;
    parts.base = folderOfPath(prefix);
    parts.nameStart = prefix.mid(parts.base.size());
    parts.nameEnd = afterStar.left(separator); // all of it without a separator
    if (separator >= 0)
        parts.rest = afterStar.mid(separator);
    return parts;
}

} // namespace

void expandWildcardFolders(QString path, const qint32 &daysOld, const bool &verbose)
{
    if (!path.contains(asterisk)) {
        runFolder(path, daysOld, verbose);
        return;
    }
    const WildcardParts parts = splitAtWildcard(path);
    if (parts.base.isEmpty())
        return;

    constexpr bool includeFolders = true;
    constexpr bool readAllFirst = false;
    constexpr bool sort = false;
    constexpr bool descending = false;
    DirListingHandle handle;
    DirListing::create(handle);
    DirListing::addSuffixFilter(handle, parts.nameEnd); // frozen: without effect on folders
    DirListing::open(handle, parts.base + parts.nameStart + asterisk, includeFolders, readAllFirst,
                     sort, descending);
    while (DirListing::next(handle)) {
        const QString name = DirListing::name(handle);
        if (DirListing::isFolder(handle) && !name.contains(asterisk))
            expandWildcardFolders(parts.base + name + parts.rest, daysOld, verbose);
    }
}
