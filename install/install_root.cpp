#include "install/install_root.h"

#include "install/relink_line.h"
#include "sweep/file_ops.h"
#include "text/white_space.h"

#include <QFile>

namespace {

const char *const relinkFile = "sub\\cfg_global\\relink_win.cfg";

QString releaseTwin(QString path)
{
    return path.replace(QLatin1String("_debug"), QLatin1String("_release"));
}

/// The relink file of a root, or of its release twin; empty when there is neither.
QString findRelinkFile(const QString &root)
{
    QString path = root + QLatin1String(relinkFile);
    if (fileExists(path))
        return path;
    const QString twin = releaseTwin(path);
    return fileExists(twin) ? twin : QString();
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
           || hasFile(relinkFile) || fileExists(releaseTwin(root) + QLatin1String(relinkFile));
}

Relink readRelinkFile(InstallPaths &paths, QString &rootLog)
{
    const QString path = findRelinkFile(paths.entries[installRoot].toQString());
    if (path.isEmpty())
        return Relink::none;
    paths.entries[installRoot].clear();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return Relink::unreadable;
    applyRelinkLine(paths, trimmedText(QString::fromLatin1(file.readLine().constData())));

    const QString root = paths.entries[installRoot].toQString();
    if (!root.isEmpty())
        rootLog += QLatin1String("\n[Relink ") + root
                   + QLatin1String(isValidRoot(root) ? "]" : ": invalid]");
    return Relink::done;
}
