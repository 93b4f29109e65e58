#include "app/wildcard_folders.h"

#include "app/folder_run.h"
#include "sweep/dir_listing.h"
#include "text/path.h"

namespace {

constexpr QChar asterisk = QLatin1Char('*');
constexpr QChar backslash = QLatin1Char('\\');

} // namespace

WildcardParts splitAtWildcard(const QString &path)
{
    const qint32 star = path.indexOf(asterisk);
    const QString prefix = path.left(star);
    const QString behind = path.mid(star + 1);
    const qint32 separator = behind.indexOf(backslash);

    WildcardParts parts;
    parts.base = folderOfPath(prefix);
    parts.nameStart = prefix.mid(parts.base.size());
    parts.nameEnd = behind.left(separator); // all of it without a backslash
    if (separator >= 0)
        parts.rest = behind.mid(separator);
    return parts;
}

void expandWildcardFolders(QString path, const qint32 &daysOld, const bool &verbose)
{
    if (!path.contains(asterisk)) {
        runFolder(path, daysOld, verbose);
        return;
    }
    const WildcardParts parts = splitAtWildcard(path);
    if (parts.base.isEmpty())
        return;

    DirListingHandle entry;
    DirListing::create(entry);
    // Filters hold for files only, so this one leaves every folder in.
    DirListing::addSuffixFilter(entry, parts.nameEnd);
    DirListing::open(entry, parts.base + parts.nameStart + asterisk, true, false, false, false);
    while (DirListing::next(entry))
        if (DirListing::isFolder(entry))
            expandWildcardFolders(parts.base + DirListing::name(entry) + parts.rest, daysOld,
                                  verbose);
}
