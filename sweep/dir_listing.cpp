#include "sweep/dir_listing.h"

#include "sweep/file_ops.h"
#include "text/path.h"

#include <algorithm>
#include <cwchar>
#include <utility>

namespace {

/// Sets folder, prefix and search pattern from the caller's folder, pattern or file.
void derivePaths(DirListing &listing, const QString &named)
{
    listing.folder = toBackslashPath(named);
    listing.searchPattern = listing.folder;
    if (listing.folder.endsWith(asterisk) || fileExists(listing.folder)) {
        listing.prefix = listing.folder.left(listing.folder.lastIndexOf(backslash) + 1);
        return;
    }
    listing.prefix = withTrailingBackslash(listing.folder);
    listing.searchPattern = listing.prefix + asterisk;
}

/// Fills `pattern` with the search pattern as Windows takes it. False when it does not fit: a
/// truncated pattern has lost its "*" and would find the folder itself, over and over.
bool makeWindowsPattern(const QString &searchPattern, FixedWideString &pattern)
{
    pattern.assignQString(searchPattern);
    if (pattern.length <= longPathLength)
        return true;
    const FixedWideString plain = pattern;
    withLongPathPrefix(pattern, plain);
    // The prefix replaces at most the first unit; the others must still be at the end.
    return pattern.toQString().endsWith(searchPattern.mid(1));
}

bool readFirstEntry(DirListing &listing)
{
    FixedWideString pattern;
    if (!makeWindowsPattern(listing.searchPattern, pattern))
        return false;
    listing.findHandle =
        FindFirstFileExW(toWChar(pattern), FindExInfoStandard, &listing.findData,
                         FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
    // A file system or an old Windows may not know the flag.
    if (listing.findHandle == INVALID_HANDLE_VALUE && GetLastError() == ERROR_INVALID_PARAMETER)
        listing.findHandle = FindFirstFileW(toWChar(pattern), &listing.findData);
    return listing.findHandle != INVALID_HANDLE_VALUE;
}

bool readNextEntry(DirListing &listing)
{
    if (listing.findHandle == INVALID_HANDLE_VALUE)
        return readFirstEntry(listing);
    return FindNextFileW(listing.findHandle, &listing.findData) != 0;
}

bool foundFolder(const DirListing &listing)
{
    return hasFolderAttribute(listing.findData.dwFileAttributes);
}

QString foundName(const DirListing &listing)
{
    const wchar_t *name = listing.findData.cFileName;
    return fromWChar(name, static_cast<int>(std::wcslen(name)));
}

TimeStamp foundTime(const DirListing &listing)
{
    const FILETIME &written = listing.findData.ftLastWriteTime;
    const FILETIME &time = written.dwHighDateTime == 0 ? listing.findData.ftCreationTime : written;
    TimeStamp seconds = 0;
    fileTimeToSeconds(seconds, time.dwLowDateTime, time.dwHighDateTime);
    return seconds;
}

qint64 foundSize(const DirListing &listing)
{
    const quint64 high = listing.findData.nFileSizeHigh;
    return static_cast<qint64>((high << 32) | listing.findData.nFileSizeLow);
}

/// Each kind of filter in use overrides the kinds before it.
bool passesFilters(const DirListing &listing)
{
    if (listing.suffixFilters.isEmpty() && listing.prefixFilters.isEmpty()
        && listing.containsFilters.isEmpty())
        return true; // without making a text of the name
    const QString name = foundName(listing);
    bool accepted = true;
    const auto apply = [&accepted](const QList<QString> &filters, auto matches) {
        if (!filters.isEmpty())
            accepted = std::any_of(filters.begin(), filters.end(), matches);
    };
    apply(listing.suffixFilters,
          [&name](const QString &text) { return name.endsWith(text, Qt::CaseInsensitive); });
    apply(listing.prefixFilters,
          [&name](const QString &text) { return name.startsWith(text, Qt::CaseInsensitive); });
    apply(listing.containsFilters,
          [&name](const QString &text) { return name.contains(text, Qt::CaseInsensitive); });
    return accepted;
}

bool isDotEntry(const DirListing &listing)
{
    const wchar_t *name = listing.findData.cFileName;
    return std::wcscmp(name, L".") == 0 || std::wcscmp(name, L"..") == 0;
}

bool isAccepted(const DirListing &listing)
{
    if (foundFolder(listing))
        return listing.includeFolders && !isDotEntry(listing);
    return passesFilters(listing);
}

bool nextInLists(DirListing &listing)
{
    ++listing.index;
    listing.statDone = false;
    listing.isOpen = listing.index < listing.names.size();
    return listing.isOpen;
}

bool nextInSearch(DirListingHandle &handle)
{
    while (readNextEntry(*handle.listing))
        if (isAccepted(*handle.listing))
            return true;
    DirListing::close(handle);
    return false;
}

void exchangeEntries(DirListing &listing, qint32 left, qint32 right)
{
    std::swap(listing.names[left], listing.names[right]);
    std::swap(listing.times[left], listing.times[right]);
    std::swap(listing.sizes[left], listing.sizes[right]);
    std::swap(listing.folderFlags[left], listing.folderFlags[right]);
}

/// Quicksort of the entries from `first` to `last` by name. Frozen: in place, so that a huge folder
/// is not in memory twice.
void sortEntries(DirListing &listing, qint32 first, qint32 last, bool descending)
{
    if (first >= last)
        return;
    const QString pivot = listing.names.at(first + (last - first) / 2);
    const auto comesBefore = [descending](const QString &left, const QString &right) {
        return descending ? right < left : left < right;
    };
    qint32 left = first;
    qint32 right = last;
    while (left <= right) {
        while (comesBefore(listing.names.at(left), pivot))
            ++left;
        while (comesBefore(pivot, listing.names.at(right)))
            --right;
        if (left <= right)
            exchangeEntries(listing, left++, right--);
    }
    sortEntries(listing, first, right, descending);
    sortEntries(listing, left, last, descending);
}

void clearLists(DirListing &listing)
{
    listing.names.clear();
    listing.times.clear();
    listing.sizes.clear();
    listing.folderFlags.clear();
}

/// Reads every entry into the lists, from which `next` then takes them.
void readAll(DirListingHandle &handle, bool sort, bool descending)
{
    DirListing &listing = *handle.listing;
    while (DirListing::next(handle)) {
        listing.names.append(foundName(listing));
        listing.times.append(foundTime(listing));
        listing.sizes.append(foundSize(listing));
        listing.folderFlags.append(foundFolder(listing));
    }
    if (sort)
        sortEntries(listing, 0, listing.names.size() - 1, descending);
    listing.isOpen = true;
    listing.fromLists = true;
    listing.haveLists = true;
    listing.index = -1;
}

/// Asks Windows about the current path, when the lists hold paths from outside.
void readSinglePathStatus(DirListing &listing)
{
    if (listing.statDone)
        return;
    listing.statDone = true;
    listing.statTime = 0;
    listing.statSize = 0;
    listing.statIsFolder = false;
    const QString &path = listing.names.at(listing.index);
    const DWORD attributes = GetFileAttributesW(toWChar(fixedText<FixedWideString250>(path)));
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return;
    listing.statIsFolder = hasFolderAttribute(attributes);
    fileTimeAndSize(path, &listing.statTime, &listing.statSize);
}

/// Kind, time and size of an entry.
struct EntryStatus
{
    bool isFolder;
    TimeStamp time;
    qint64 size;
};

EntryStatus statusOf(DirListing &listing)
{
    if (!listing.fromLists)
        return { foundFolder(listing), foundTime(listing), foundSize(listing) };
    const qint32 index = listing.index;
    if (listing.haveLists)
        return { listing.folderFlags.at(index), listing.times.at(index), listing.sizes.at(index) };
    readSinglePathStatus(listing);
    return { listing.statIsFolder, listing.statTime, listing.statSize };
}

} // namespace

DirListingHandle::~DirListingHandle() { DirListing::destroy(*this); }

void DirListing::create(DirListingHandle &handle)
{
    destroy(handle);
    handle.listing = new DirListing;
    handle.listing->owner = &handle;
}

void DirListing::open(DirListingHandle &handle, const QString &folder, bool includeFolders,
                      bool readAllFirst, bool sort, bool descending)
{
    close(handle);
    DirListing &listing = *handle.listing;
    listing.includeFolders = includeFolders;
    derivePaths(listing, folder);
    clearLists(listing);
    listing.isOpen = true;
    if (readAllFirst || sort)
        readAll(handle, sort, descending);
}

bool DirListing::next(DirListingHandle &handle)
{
    if (!handle.listing->isOpen)
        return false;
    return handle.listing->fromLists ? nextInLists(*handle.listing) : nextInSearch(handle);
}

bool DirListing::isFolder(DirListingHandle &handle) { return statusOf(*handle.listing).isFolder; }

QString DirListing::name(const DirListingHandle &handle)
{
    const DirListing &listing = *handle.listing;
    return listing.fromLists ? listing.names.at(listing.index) : foundName(listing);
}

QString DirListing::fullPath(const DirListingHandle &handle)
{
    const DirListing &listing = *handle.listing;
    return listing.namesAreFullPaths ? name(handle) : listing.prefix + name(handle);
}

TimeStamp DirListing::time(DirListingHandle &handle) { return statusOf(*handle.listing).time; }

qint64 DirListing::size(DirListingHandle &handle) { return statusOf(*handle.listing).size; }

void DirListing::addSuffixFilter(DirListingHandle &handle, const QString &text)
{
    if (!text.isEmpty())
        handle.listing->suffixFilters.append(text);
}

void DirListing::close(DirListingHandle &handle)
{
    DirListing &listing = *handle.listing;
    if (listing.findHandle != INVALID_HANDLE_VALUE)
        FindClose(listing.findHandle);
    listing.findHandle = INVALID_HANDLE_VALUE;
    listing.isOpen = false;
    listing.fromLists = false;
    listing.namesAreFullPaths = false;
    listing.haveLists = false;
}

void DirListing::destroy(DirListingHandle &handle)
{
    if (handle.listing == nullptr)
        return;
    close(handle);
    delete handle.listing;
    handle.listing = nullptr;
}
