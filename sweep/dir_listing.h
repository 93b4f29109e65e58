// The entries of one folder: name, full path, folder flag, time and size.
//
// Entries come from the Win32 directory search, or from lists into which a whole folder was read
// first, so that entries can be deleted on the way. "." and ".." never appear; hidden, system and
// linked entries do, like any other. A folder that cannot be searched, or only to some point, has
// no (more) entries; nothing reports it.
#pragma once

#include "sweep/file_time.h"
#include "sweep/windows_api.h"

#include <QList>
#include <QString>
#include <QVector>

struct DirListing;

/// Where a caller keeps a listing; destroys it when it goes out of scope.
struct DirListingHandle
{
    DirListingHandle() = default;
    ~DirListingHandle();
    DirListingHandle(const DirListingHandle &) = delete;
    DirListingHandle &operator=(const DirListingHandle &) = delete;

    DirListing *listing = nullptr;
};

/// A listing under way. Its operations take the handle it lives in, which `create` fills first.
///
/// Where several kinds of filters are set, prefixes override the verdict of suffixes, and what a
/// name contains that of both. The tool needs neither prefix and contains filters nor lists of
/// paths from outside (namesAreFullPaths and the stat... values); other users set those fields
/// themselves.
///
///     DirListingHandle handle;
///     DirListing::create(handle);
///     DirListing::open(handle, folder, true, true, false, false);
///     while (DirListing::next(handle))
///         use(DirListing::name(handle));
struct DirListing
{
    /// Puts a new, closed listing into the handle, in place of one that it may hold.
    static void create(DirListingHandle &handle);

    /// Starts to list `folder`: a folder, with or without a closing backslash, a pattern that ends
    /// with "*", or one file. Slashes count as backslashes; closes what was open; keeps the
    /// filters.
    ///
    /// `includeFolders` yields folders too. `readAllFirst` reads everything into memory at once and
    /// closes the search; `sort` does too and orders by name (UTF-16 units, with regard to case),
    /// `descending` from the last to the first. Unsorted entries come in the platform's order.
    static void open(DirListingHandle &handle, const QString &folder, bool includeFolders,
                     bool readAllFirst, bool sort, bool descending);

    /// Goes to the next accepted entry. False when there is none: the listing is then at its end.
    static bool next(DirListingHandle &handle);

    // Of the current entry, that is after `next` gave true.
    static bool isFolder(DirListingHandle &handle);
    static QString name(const DirListingHandle &handle);
    /// The name behind the listed folder; not made absolute.
    static QString fullPath(const DirListingHandle &handle);
    /// Last-write time, or the creation time when the upper 32 bits of the former are 0.
    static TimeStamp time(DirListingHandle &handle);
    /// In bytes.
    static qint64 size(DirListingHandle &handle);

    /// From now on only files whose names end with one of the added texts, no case, are accepted.
    /// Folders are not filtered. An empty text is ignored.
    static void addSuffixFilter(DirListingHandle &handle, const QString &text);

    /// Ends the listing and its search (FindClose).
    static void close(DirListingHandle &handle);

    /// Closes and frees the listing and empties the handle. Nothing for an empty handle.
    static void destroy(DirListingHandle &handle);

    bool isOpen = false;
    bool fromLists = false; // next walks the lists, not the search
    bool namesAreFullPaths = false;
    bool haveLists = false; // times, sizes and folder flags are in the lists too
    bool includeFolders = false;
    QString folder; // as given, with backslashes
    QString prefix; // what a name's full path begins with
    QList<QString> prefixFilters;
    QList<QString> suffixFilters;
    QList<QString> containsFilters;
    QString searchPattern;
    bool statDone = false; // the three values below are those of the current path
    qint32 index = -1;     // in the lists; -1 before the first entry
    TimeStamp statTime = 0;
    qint64 statSize = 0;
    bool statIsFolder = false;
    WIN32_FIND_DATAW findData = {};
    HANDLE findHandle = INVALID_HANDLE_VALUE;
    QList<QString> names; // the four lists are parallel
    QList<TimeStamp> times;
    QList<qint64> sizes;
    QVector<bool> folderFlags;         // one byte each; a QList takes eight
    DirListingHandle *owner = nullptr; // where it lives, for who has but the listing
};
