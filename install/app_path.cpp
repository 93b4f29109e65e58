#include "install/app_path.h"

#include "sweep/windows_api.h"

#include <cstdlib>
#include <cwchar>

namespace {

constexpr DWORD moduleNameBytes = 250;    // the capacity; see appFolder for a longer name
constexpr DWORD currentFolderBytes = 249; // frozen; the terminator included

FixedNarrowString250 currentFolder()
{
    FixedNarrowString250 folder;
    const DWORD count = GetCurrentDirectoryA(currentFolderBytes, folder.value);
    // A count that exceeds the buffer is the size that the folder would need.
    folder.setLength(static_cast<qint16>(count < currentFolderBytes ? count : 0));
    return folder;
}

/// The value of an environment variable; null when it is not set.
QString variableValue(const QString &name)
{
    wchar_t *text = nullptr;
    std::size_t units = 0; // the terminator included
    QString value;
    if (_wdupenv_s(&text, &units, toWChar(name)) == 0 && text != nullptr && units > 0)
        value = fromWChar(text, static_cast<int>(std::wcslen(text)));
    std::free(text); // NOLINT(*-no-malloc): the C run-time allocated it
    return value;
}

} // namespace

FixedNarrowString250 parentFolderNarrow(FixedNarrowString250 &path)
{
    if (path.length < 3)
        return path;
    if (path.endsWithBackslash())
        path.setLength(static_cast<qint16>(path.length - 1));
    const qint32 last = path.lastIndexOfUnit(backslashUnit, path.length);
    const bool isNetworkPath = path.value[1] == backslashUnit;
    if (last >= 2 && (!isNetworkPath || path.lastIndexOfUnit(backslashUnit, last) >= 2))
        path.setLength(static_cast<qint16>(last));
    path.appendUnits(&backslashUnit, 1); // frozen: also after a backslash
    return path;
}

FixedNarrowString250 absoluteProgramPath(FixedNarrowString250 path,
                                         FixedNarrowString250 currentFolder)
{
    if (path.length < 4)
        return FixedNarrowString250();
    const bool isRelative = path.value[0] != backslashUnit && path.value[1] != ':';
    if (!isRelative || path.firstBackslash() < 0 || currentFolder.length <= 3)
        return path;

    currentFolder.addTrailingBackslash();
    const auto parentReference = fixedText<FixedNarrowString250>("..\\");
    qint32 rest = 0;
    qint32 found = path.indexOfNoCase(parentReference, 0);
    while (found >= 0) {
        parentFolderNarrow(currentFolder);
        rest = found + parentReference.length;
        found = path.indexOfNoCase(parentReference, found + 1);
    }
    currentFolder.appendUnits(path.value + rest, path.length - rest);
    return currentFolder;
}

bool appFolder(const char *argv0, FixedNarrowString250 &folder)
{
    folder.clear();
    // A longer name fills the buffer, perhaps without a terminator, so the count is its length.
    const DWORD count = GetModuleFileNameA(nullptr, folder.value, moduleNameBytes);
    folder.setLength(static_cast<qint16>(count));
    if (folder.isEmpty() && argv0 != nullptr)
        folder = absoluteProgramPath(fixedText<FixedNarrowString250>(argv0), currentFolder());
    if (folder.isEmpty())
        return false;
    parentFolderNarrow(folder);
    return true;
}

QString getEnv(const QString &name)
{
    QString value;
    if (name.compare(QLatin1String("ProgramFiles"), Qt::CaseInsensitive) == 0)
        value = variableValue(QString::fromLatin1("ProgramW6432"));
    return value.isNull() ? variableValue(name) : value;
}
