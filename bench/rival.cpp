// The benchmark's rival: the same job in twenty lines of std::filesystem.
//
// usage: rival FOLDER DAYS
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

bool sweep(const fs::path &folder, fs::file_time_type limit)
{
    bool isEmpty = true;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder)) {
        const bool isFolder = entry.is_directory();
        if (isFolder ? sweep(entry.path(), limit) : entry.last_write_time() < limit) {
            if (!isFolder) // read-only files are removed too
                fs::permissions(entry.path(), fs::perms::owner_write, fs::perm_options::add);
            fs::remove(entry.path());
        } else {
            isEmpty = false;
        }
    }
    return isEmpty;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    const std::chrono::hours maxAge(24 * std::strtol(argv[2], nullptr, 10));
    // Widened here: the C++ library's conversion does not link with this C run-time.
    const fs::path folder(std::wstring(argv[1], argv[1] + std::strlen(argv[1])));
    sweep(folder, fs::file_time_type::clock::now() - maxAge);
    return 0;
}
