#include "install/relink_line.h"

#include "text/white_space.h"

namespace {

bool isSetting(const QString &line, const char *key)
{
    return line.startsWith(QLatin1String(key), Qt::CaseInsensitive)
           && line.contains(QLatin1Char('='));
}

QString valueOf(const QString &line)
{
    return trimmedText(line.mid(line.indexOf(QLatin1Char('=')) + 1));
}

} // namespace

void applyRelinkLine(InstallPaths &paths, const QString &line)
{
    if (isSetting(line, "Root")) {
        FixedWideString250 &root = paths.entries[installRoot];
        root.assignQString(valueOf(line));
        if (!root.isEmpty() && !root.endsWithBackslash())
            root.appendUnits(u"\\", 1);
    } else if (isSetting(line, "ExeRoot")) {
        paths.entries[executablesRoot].assignQString(valueOf(line));
    }
}
