#include "install/root_discovery.h"

#include "install/app_path.h"
#include "install/root_flags.h"
#include "install/root_validation.h"
#include "text/path.h"

namespace {

const char *const accepted = "]";
const char *const acceptedByFlag = ": VALID!]";
const char *const rejected = ": invalid]";

QString twoFoldersUp(const QString &folder)
{
    return parentFolder(parentFolder(folder, backslash), backslash);
}

/// Logs whether the candidate is a root, and clears it when it is not.
void logAndClearInvalid(QString &candidate, QString &rootLog, const char *whenAccepted)
{
    const bool isValid = isValidRoot(candidate);
    rootLog += QLatin1String(isValid ? whenAccepted : rejected);
    if (!isValid)
        candidate.clear();
}

QString rootFromFlag(int argc, char **argv, QString &rootLog, bool &startedOutsideRoot)
{
    rootLog += QLatin1String("\n[-kxRoot flag: ");
    QString candidate;
    for (const QString &value : rootFlagValues(argc, argv)) {
        candidate = value;
        rootLog += value;
    }
    logAndClearInvalid(candidate, rootLog, acceptedByFlag);
    if (candidate.isEmpty())
        return candidate;
    const QString programName = QString::fromLatin1(argv[0]);
    if (programName.mid(1, 1) == QLatin1String(":"))
        startedOutsideRoot = !programName.startsWith(candidate);
    return candidate;
}

QString rootFromEnvironment(const char *variable, QString &rootLog)
{
    QString candidate = getEnv(QString::fromLatin1(variable));
    candidate.remove(QLatin1Char('\r'));
    if (!candidate.isEmpty())
        candidate = withTrailingBackslash(candidate);
    rootLog += QLatin1String("\n[") + QLatin1String(variable) + QLatin1String(": ") + candidate;
    logAndClearInvalid(candidate, rootLog, accepted);
    return candidate;
}

QString rootAboveProgram(int argc, char **argv)
{
    FixedNarrowString250 folder;
    appFolder(argc >= 1 ? argv[0] : nullptr, folder);
    return twoFoldersUp(normalizePath(folder.toQString()));
}

/// Brings a candidate into its final spelling, logs it, and clears it when it is no root.
void checkFinalSpelling(QString &candidate, QString &rootLog)
{
    candidate.replace(QLatin1String("\\_internal_"), QLatin1String("\\_"));
    candidate = toBackslashPath(candidate);
    rootLog += QLatin1String("\n[appPath: ") + candidate;
    logAndClearInvalid(candidate, rootLog, accepted);
}

QString rootFromProgramName(const QString &programName)
{
    const qint32 last = programName.lastIndexOf(backslash);
    if (last <= 2) // no folder after a drive
        return QString();
    const QString candidate = twoFoldersUp(programName.left(last + 1));
    return isValidRoot(candidate) ? candidate : QString();
}

/// Replaces a root that is named after its version by the folder above it, if that is a root.
void replaceVersionFolder(InstallPaths &paths)
{
    FixedWideString250 &root = paths.entries[installRoot];
    if (!root.endsWithNoCase(fixedText<FixedWideString250>("_KX9"))
        && !root.endsWithNoCase(fixedText<FixedWideString250>("_KX9\\")))
        return;
    const QString parent = parentFolder(root.toQString(), backslash);
    if (isValidRoot(parent))
        root.assignQString(parent);
}

} // namespace

bool findInstallRoot(InstallPaths &paths, int argc, char **argv, QString &rootLog,
                     bool &startedOutsideRoot, bool cfgGlobalFromExeRoot,
                     bool renderAppsFromExeRoot, const FixedNarrowString100 &renderAppsOverride,
                     bool win64Binaries)
{
    QString candidate = rootFromFlag(argc, argv, rootLog, startedOutsideRoot);
    if (candidate.isEmpty())
        candidate = rootFromEnvironment("KX_ROOT_INSTALLER", rootLog);
    if (candidate.isEmpty())
        candidate = rootAboveProgram(argc, argv);
    checkFinalSpelling(candidate, rootLog); // frozen: tests the first two sources a second time
    if (candidate.isEmpty() && argc >= 1)
        candidate = rootFromProgramName(QString::fromLatin1(argv[0]));
    if (candidate.isEmpty())
        candidate = rootFromEnvironment("KX_ROOT", rootLog);
    if (candidate.isEmpty())
        return false;

    paths.entries[installRoot].assignQString(candidate);
    paths.entries[executablesRoot] = paths.entries[installRoot];
    const RelinkResult relink = readRelinkFile(paths, rootLog);
    if (relink == RelinkResult::cannotOpen)
        return false;
    if (relink == RelinkResult::noFile)
        replaceVersionFolder(paths);
    readStatusFlags(paths, argc, argv);
    buildInstallLayout(paths, argc, argv, cfgGlobalFromExeRoot, renderAppsFromExeRoot,
                       renderAppsOverride, win64Binaries);
    return true;
}
