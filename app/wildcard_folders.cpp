#include "app/wildcard_folders.h"

#include "app/folder_run.h"
#include "app/wildcard_parts.h"
#include "sweep/dir_listing.h"
#include "text/path.h"

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
    while (DirListing::next(entry)) {
        const QString name = DirListing::name(entry);
        if (DirListing::isFolder(entry) && !name.contains(asterisk))
            expandWildcardFolders(parts.base + name + parts.rest, daysOld, verbose);
    }
}
