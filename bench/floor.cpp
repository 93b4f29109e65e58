// The benchmark's floor: the Windows calls that a sweep of a folder tree needs, in the tool's
// order, and nothing else. It writes no report and builds no texts; on the heap it keeps only the
// list of a folder's entries. The tool's time beyond the floor's is its own.
//
// usage: floor FOLDER DAYS [--no-reset]
//
// With --no-reset it does not reset the attributes of files. This shows what that call costs.
#include <windows.h>

#include <cstdlib>
#include <ctime>
#include <cwchar>
#include <vector>

namespace {

constexpr std::size_t longPathLength = 240;
constexpr unsigned long long ticksUntil1970 = 116444736000000000u;
constexpr unsigned long long ticksPerSecond = 10000000;
constexpr long long secondsPerDay = 86400;

/// The current path, stored after the long-path prefix so that both forms are at hand.
struct Path
{
    const wchar_t *text(std::size_t plainBelow) const
    {
        return length < plainBelow ? units + prefixLength : units;
    }

    /// Puts a backslash and `name` after the first `folderLength` units.
    void set(std::size_t folderLength, const wchar_t *name)
    {
        const std::size_t nameLength = std::wcslen(name);
        wchar_t *end = units + prefixLength + folderLength;
        *end = L'\\';
        std::wmemcpy(end + 1, name, nameLength + 1);
        length = folderLength + 1 + nameLength;
    }

    void cut(std::size_t folderLength)
    {
        length = folderLength;
        units[prefixLength + length] = L'\0';
    }

    static constexpr std::size_t prefixLength = 4;
    wchar_t units[1024] = L"\\\\?\\";
    std::size_t length = 0; // without the prefix
};

struct Entry
{
    long long time;   // seconds since 1970
    std::size_t name; // index of its first unit in Listing::names
    bool isFolder;
};

/// The entries of one folder, and their names one after another, each with its terminator.
struct Listing
{
    std::vector<Entry> entries;
    std::vector<wchar_t> names;
};

void add(Listing &listing, const WIN32_FIND_DATAW &found)
{
    const wchar_t *name = found.cFileName;
    const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (isFolder && (std::wcscmp(name, L".") == 0 || std::wcscmp(name, L"..") == 0))
        return;
    const unsigned long long high = found.ftLastWriteTime.dwHighDateTime;
    const unsigned long long ticks = high << 32 | found.ftLastWriteTime.dwLowDateTime;
    const auto time = static_cast<long long>((ticks - ticksUntil1970) / ticksPerSecond);
    listing.entries.push_back({ time, listing.names.size(), isFolder });
    listing.names.insert(listing.names.end(), name, name + std::wcslen(name) + 1);
}

void read(Listing &listing, const wchar_t *pattern)
{
    WIN32_FIND_DATAW found;
    const HANDLE search =
        FindFirstFileExW(pattern, FindExInfoStandard, &found, FindExSearchNameMatch, nullptr,
                         FIND_FIRST_EX_LARGE_FETCH);
    if (search == INVALID_HANDLE_VALUE)
        return;
    do {
        add(listing, found);
    } while (FindNextFileW(search, &found) != 0);
    FindClose(search);
}

bool hasAttributes(const wchar_t *path, bool folder)
{
    const DWORD attributes = GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES
           && ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) == folder;
}

bool removeFile(const wchar_t *path, bool reset)
{
    if (!hasAttributes(path, false))
        return true;
    if (reset)
        SetFileAttributesW(path, FILE_ATTRIBUTE_NORMAL);
    return DeleteFileW(path) != 0;
}

bool removeFolder(const Path &path)
{
    wchar_t full[1024]; // QDir::rmdir makes this call too
    GetFullPathNameW(path.units + Path::prefixLength, 1024, full, nullptr);
    return RemoveDirectoryW(path.units) != 0;
}

bool sweep(Path &path, long long maxAge, bool reset, bool removeIfEmpty)
{
    if (!hasAttributes(path.text(longPathLength), true))
        return true;
    hasAttributes(path.text(longPathLength), false); // the tool's listing checks this
    const std::size_t folderLength = path.length;
    Listing listing;
    path.set(folderLength, L"*");
    read(listing, path.text(longPathLength + 1));
    const long long now = _time64(nullptr);

    bool nothingLeft = true;
    for (const Entry &entry : listing.entries) {
        path.set(folderLength, listing.names.data() + entry.name);
        if (entry.isFolder)
            nothingLeft &= sweep(path, maxAge, reset, true);
        else if (now <= entry.time + maxAge)
            nothingLeft = false;
        else
            nothingLeft &= removeFile(path.text(longPathLength), reset);
    }
    path.cut(folderLength);
    return nothingLeft && removeIfEmpty ? removeFolder(path) : nothingLeft;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3)
        return 2;
    Path path;
    for (const char *unit = argv[1]; *unit != '\0'; ++unit)
        path.units[Path::prefixLength + path.length++] = static_cast<unsigned char>(*unit);
    path.cut(path.length);
    if (!hasAttributes(path.text(longPathLength), true))
        return 1;
    sweep(path, std::atoi(argv[2]) * secondsPerDay, argc == 3, false);
    ULARGE_INTEGER bytes;
    GetDiskFreeSpaceExW(path.units + Path::prefixLength, &bytes, &bytes, &bytes);
    return 0;
}
