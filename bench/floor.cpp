// The benchmark's floor: the Windows calls that a sweep of a folder tree needs, in the tool's
// order, and nothing else. It writes no report and builds no text but the path; on the heap it
// keeps only this path and the list of a folder's entries. The tool's time beyond the floor's is
// its own.
//
// usage: floor FOLDER DAYS [--no-reset]
//
// With --no-reset it does not reset the attributes of files. This shows what that call costs.
#include <windows.h>

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <cwchar>
#include <string>
#include <vector>

namespace {

constexpr std::size_t longPathLength = 240;
constexpr std::size_t prefixLength = 4;
constexpr unsigned long long ticksUntil1970 = 116444736000000000u;
constexpr unsigned long long ticksPerSecond = 10000000;
constexpr long long secondsPerDay = 86400;

/// The current path after the long-path prefix, so that both forms are at hand. Windows gets the
/// plain one below `plainBelow` units.
const wchar_t *text(const std::wstring &path, std::size_t plainBelow = longPathLength)
{
    return path.c_str() + (path.size() - prefixLength < plainBelow ? prefixLength : 0);
}

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

void read(Listing &listing, const wchar_t *pattern)
{
    WIN32_FIND_DATAW found;
    HANDLE search = FindFirstFileExW(pattern, FindExInfoStandard, &found, FindExSearchNameMatch,
                                     nullptr, FIND_FIRST_EX_LARGE_FETCH);
    if (search == INVALID_HANDLE_VALUE)
        return;
    for (BOOL isFound = TRUE; isFound != 0; isFound = FindNextFileW(search, &found)) {
        const wchar_t *name = found.cFileName;
        const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (isFolder && (std::wcscmp(name, L".") == 0 || std::wcscmp(name, L"..") == 0))
            continue;
        const unsigned long long high = found.ftLastWriteTime.dwHighDateTime;
        const unsigned long long ticks = high << 32 | found.ftLastWriteTime.dwLowDateTime;
        const auto time = static_cast<long long>((ticks - ticksUntil1970) / ticksPerSecond);
        listing.entries.push_back({ time, listing.names.size(), isFolder });
        listing.names.insert(listing.names.end(), name, name + std::wcslen(name) + 1);
    }
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

bool removeFolder(const std::wstring &path)
{
    wchar_t full[1024]; // QDir::rmdir makes this call too
    GetFullPathNameW(path.c_str() + prefixLength, 1024, full, nullptr);
    return RemoveDirectoryW(path.c_str()) != 0;
}

bool sweep(std::wstring &path, long long maxAge, bool reset, bool removeIfEmpty)
{
    if (!hasAttributes(text(path), true))
        return true;
    hasAttributes(text(path), false); // the tool's listing checks this
    const std::size_t folderLength = path.size();
    Listing listing;
    path += L"\\*";
    read(listing, text(path, longPathLength + 1));
    const long long now = _time64(nullptr);

    bool nothingLeft = true;
    for (const Entry &entry : listing.entries) {
        path.resize(folderLength + 1); // with the backslash
        path += listing.names.data() + entry.name;
        if (entry.isFolder)
            nothingLeft &= sweep(path, maxAge, reset, true);
        else if (now <= entry.time + maxAge)
            nothingLeft = false;
        else
            nothingLeft &= removeFile(text(path), reset);
    }
    path.resize(folderLength);
    return nothingLeft && removeIfEmpty ? removeFolder(path) : nothingLeft;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3)
        return 2;
    std::wstring path = L"\\\\?\\";
    path.append(argv[1], argv[1] + std::strlen(argv[1]));
    if (!hasAttributes(text(path), true))
        return 1;
    sweep(path, std::strtol(argv[2], nullptr, 10) * secondsPerDay, argc == 3, false);
    ULARGE_INTEGER bytes;
    GetDiskFreeSpaceExW(path.c_str() + prefixLength, &bytes, &bytes, &bytes);
    return 0;
}
