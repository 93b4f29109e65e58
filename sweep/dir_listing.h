// The entries of one folder: name, full path, folder flag, time and size.
//
// Entries come from the Win32 directory search, or from lists into which the whole folder was read
// first, so that the caller may delete entries on the way. "." and ".." never appear. Hidden,
// system and linked entries do, like any other.
//
// No failure is reported. A folder that cannot be searched has no entries, nor has one whose search
// pattern (its path with "\*") would not fit into 500 UTF-16 units, prefix included. A search that
// fails halfway just ends. A frozen interface of the suite's tools, see CONTRIBUTING.md.
#pragma once

#include "sweep/file_time.h"
#include "sweep/windows_api.h"

#include <QList>
#include <QString>
#include <QVector>

struct DirListing;

/// Owns a listing: destroys it when it goes out of scope.
struct DirListingHandle
{
    DirListingHandle() = default;
    ~DirListingHandle();
    DirListingHandle(const DirListingHandle &) = delete;
    DirListingHandle &operator=(const DirListingHandle &) = delete;

    DirListing *listing = nullptr;
};

/// A listing. Its operations take the handle that owns it, which `create` fills first.
///
/// When several kinds of filters are set, the prefix filters override the suffix filters, and the
/// contains filters override both. This tool uses neither prefix nor contains filters, nor lists of
/// paths from outside. Other tools set those filters themselves. To list their own paths, they set
/// names, fromLists, isOpen, namesAreFullPaths, and index to -1. Such paths are not filtered. Their
/// folder flag is that of the path truncated at 250 units; when that one does not exist, their time
/// and size are 0 too. Their time is the last-write time. A folder's time and size are 0.
///
///     DirListingHandle handle;
///     DirListing::create(handle);
///     DirListing::open(handle, folder, includeFolders, readAllFirst, sort, descending);
///     while (DirListing::next(handle))
///         use(DirListing::name(handle));
struct DirListing
{
    /// Puts a new, closed listing into the handle. Destroys the one it holds.
    static void create(DirListingHandle &handle);

    /// Starts to list `folder`: a folder with or without a trailing backslash, a pattern that ends
    /// with "*", or one file. Slashes count as backslashes. Closes what was open, keeps the
    /// filters.
    ///
    /// `includeFolders` yields folders too. `readAllFirst` reads all entries into memory at once
    /// and closes the search. `sort` does so too, and sorts by name (UTF-16 units, case-sensitive),
    /// in `descending` order if asked. Unsorted entries come in the order of Windows' search.
    static void open(DirListingHandle &handle, const QString &folder, bool includeFolders,
                     bool readAllFirst, bool sort, bool descending);

    /// Goes to the next accepted entry. False when there is none; `isOpen` is then false.
    static bool next(DirListingHandle &handle);

    // Of the current entry, after `next` returned true.
    static bool isFolder(DirListingHandle &handle);
    static QString name(const DirListingHandle &handle);
    /// The listed folder and the name, not made absolute. With namesAreFullPaths, the name alone.
    static QString fullPath(const DirListingHandle &handle);
    /// Last-write time; the creation time when the upper 32 bits of the last-write time are 0.
    static TimeStamp time(DirListingHandle &handle);
    /// In bytes.
    static qint64 size(DirListingHandle &handle);

    /// From now on accepts only files whose names end with one of the added texts,
    /// case-insensitive. Folders are not filtered. An empty text is ignored.
    static void addSuffixFilter(DirListingHandle &handle, const QString &text);

    /// Ends the listing and its search (FindClose).
    static void close(DirListingHandle &handle);

    /// Closes and frees the listing, and empties the handle. Does nothing for an empty handle.
    static void destroy(DirListingHandle &handle);

    bool isOpen = false;
    bool fromLists = false; // next walks the lists instead of the search
    bool namesAreFullPaths = false;
    bool haveLists = false; // times, sizes and folder flags are in the lists too
    bool includeFolders = false;
    QString folder; // as given, with backslashes
    QString prefix; // what a name's full path begins with
    QList<QString> prefixFilters;
    QList<QString> suffixFilters;
    QList<QString> containsFilters;
    QString searchPattern;
    bool statDone = false; // the stat... values are those of the current path
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
    DirListingHandle *owner = nullptr; // frozen: not read here
};
