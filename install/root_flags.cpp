#include "install/root_flags.h"

#include "text/entities.h"
#include "text/path.h"

namespace {

bool isFlag(const QString &text, const char *flag)
{
    return text.startsWith(QLatin1String(flag), Qt::CaseInsensitive);
}

void setStatusFolder(InstallPaths &paths, const QString &value)
{
    FixedWideString250 &status = paths.entries[statusFolder];
    status.assignQString(value);
    // A quoted value that ends with a backslash arrives with its closing quote.
    if (!status.isEmpty() && status.value[status.length - 1] == u'"')
        status.setLength(static_cast<qint16>(status.length - 1));
    status.addTrailingBackslash();
    if (!status.startsWithParentReference())
        return;
    FixedWideString250 absolute = paths.entries[installRoot];
    absolute.appendUnits(status.value, status.length);
    auto path = fixedText<FixedWideString>(absolute.toQString());
    status.assignQString(normalizePathFixed(path).toQString());
}

} // namespace

QStringList rootFlagValues(int argc, char **argv)
{
    QStringList values;
    for (int i = 1; i + 1 < argc; ++i) {
        if (isFlag(decodeEntities(QString::fromLatin1(argv[i])), "-kxRoot"))
            values.append(withTrailingBackslash(decodeEntities(QString::fromLatin1(argv[i + 1]))));
    }
    return values;
}

void readStatusFlags(InstallPaths &paths, int argc, char **argv)
{
    paths.entries[statusFolder].clear();
    for (int i = 1; i + 1 < argc; ++i)
        if (isFlag(QString::fromLatin1(argv[i]), "-loadstatus"))
            setStatusFolder(paths, decodeEntities(QString::fromLatin1(argv[i + 1])));
}
