#include "install/root_validation.h"

#include "sweep/file_ops.h"
#include "text/white_space.h"

#include <QFile>

namespace {

const char *const relinkFile = "sub\\cfg_global\\relink_win.cfg";

/// The path of the release build of a debug build. Case-sensitive, unlike the replacement in the
/// layout.
QString debugToReleaseExactCase(QString path)
{
    return path.replace(QLatin1String("_debug"), QLatin1String("_release"));
}

/// The relink file of a root or of its release build; empty when neither has one.
QString findRelinkFile(const QString &root)
{
    QString path = root + QLatin1String(relinkFile);
    if (fileExists(path))
        return path;
    path = debugToReleaseExactCase(path);
    return fileExists(path) ? path : QString();
}

/// Reads the first line of a file, without white space at its ends. False when it cannot be opened.
bool readFirstLine(const QString &path, QString &line)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    line = trimmedText(QString::fromLatin1(file.readLine().constData()));
    return true;
}

bool isSetting(const QString &line, const char *key)
{
    return line.startsWith(QLatin1String(key), Qt::CaseInsensitive)
           && line.contains(QLatin1Char('='));
}

QString valueOf(const QString &line)
{
    return trimmedText(line.mid(line.indexOf(QLatin1Char('=')) + 1));
}

void applyRelinkLine(InstallPaths &paths, const QString &line)
{
    if (isSetting(line, "Root")) {
        FixedWideString250 &root = paths.entries[installRoot];
        root.assignQString(valueOf(line));
        if (!root.isEmpty())
            root.addTrailingBackslash();
    } else if (isSetting(line, "ExeRoot")) {
        paths.entries[executablesRoot].assignQString(valueOf(line));
    }
}

} // namespace

bool isValidRoot(const QString &root)
{
    if (root.isEmpty())
        return false;
    const auto hasFile = [&root](const char *name) {
        return fileExists(root + QLatin1String(name));
    };
    return hasFile("sub\\cfg_global\\globalconfig.ini")
           || folderExists(root + QLatin1String("sub\\cfg_global\\"))
           || hasFile("bin\\win64\\kxClientconsole.exe")
           || hasFile("bin\\win64\\kxServerconsole.exe") || hasFile("bin\\win64\\kxControl.exe")
           || hasFile(relinkFile)
           || fileExists(debugToReleaseExactCase(root) + QLatin1String(relinkFile));
}

RelinkResult readRelinkFile(InstallPaths &paths, QString &rootLog)
{
    const QString path = findRelinkFile(paths.entries[installRoot].toQString());
    if (path.isEmpty())
        return RelinkResult::noFile;
    paths.entries[installRoot].clear();
    QString line;
    if (!readFirstLine(path, line))
        return RelinkResult::cannotOpen;
    applyRelinkLine(paths, line);

    const QString root = paths.entries[installRoot].toQString();
    if (!root.isEmpty())
        rootLog += QLatin1String("\n[Relink ") + root
                   + QLatin1String(isValidRoot(root) ? "]" : ": invalid]");
    return RelinkResult::read;
}
