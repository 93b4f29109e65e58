#include "app/root_check.h"

#include "install/root_discovery.h"
#include "install/root_flags.h"
#include "sweep/console.h"

bool checkInstallRoot(int argc, char **argv)
{
    // Frozen: kept until the process ends. This tool reads none of its folders.
    static InstallPaths paths;
    QString rootLog;
    bool startedOutsideRoot = false;
    constexpr bool cfgGlobalFromExeRoot = false;
    constexpr bool renderAppsFromExeRoot = false;
    constexpr bool win64Binaries = true;
    if (findInstallRoot(paths, argc, argv, rootLog, startedOutsideRoot, cfgGlobalFromExeRoot,
                        renderAppsFromExeRoot, FixedNarrowString100(), win64Binaries))
        return true;

    const QStringList flagValues = rootFlagValues(argc, argv);
    const QString lastFlagValue = flagValues.isEmpty() ? QString() : flagValues.last();
    // Frozen: one arg() at a time, so a "%2" in the program's name is filled too.
    const QString message =
        QString::fromLatin1("Unable to get KX Root path; This executable was not started from a "
                            "KX directory.\n\n (Tried: '%1', '%2')\n%3")
            .arg(QString::fromLatin1(argv[0]))
            .arg(lastFlagValue)
            .arg(rootLog);
    printAsFormat(message.toLatin1());
    return false;
}
