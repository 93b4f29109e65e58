// This program is X:\unit\bin\win64\install_test.exe, so it belongs to the root X:\unit\.
#include "install/app_path.h"
#include "install/root_discovery.h"

#include "support/scratch.h"
#include "support/text.h"

#include <vector>

namespace {

/// The results of findInstallRoot for the arguments of a command line that is split at its blanks.
struct Discovery
{
    explicit Discovery(const QString &commandLine)
    {
        QList<QByteArray> words = commandLine.toLatin1().split(' ');
        if (commandLine.isEmpty())
            words.clear();
        std::vector<char *> argv;
        for (QByteArray &word : words)
            argv.push_back(word.data());
        isFound = findInstallRoot(paths, words.size(), argv.data(), log, isOutside, false, false,
                                  FixedNarrowString100(), true);
    }
    QString folder(InstallEntry entry) const { return paths.entries[entry].toQString(); }

    InstallPaths paths;
    QString log;
    bool isOutside = false;
    bool isFound;
};

TEST(RootDiscovery, TakesTheFirstValidSource)
{
    const ScratchFolder scratch;
    for (const QStringList &row : rowsOf("roots.txt")) {
        const QString firstLine = row.value(1).replace(QChar(0x2026), QChar(0x85));
        const QByteArray content = "  " + firstLine.toLatin1() + " \nExeRoot=Y:\\no";
        makeFile(L"X:\\" + row.at(0).toStdWString(), 0, content.constData());
    }
    qputenv("KX_ROOT_INSTALLER", "X:/\rt/r\r"); // "\r" is removed
    _wputenv(L"KX_ROOT=X:/t/\u0432");           // outside Latin-1
    const auto root = [](const QString &line) {
        const Discovery discovery(line);
        return discovery.folder(installRoot) + latin1(discovery.isOutside ? " outside" : "");
    };
    const auto rootsAndLog = [](const QString &line) {
        const Discovery discovery(line);
        QStringList found(discovery.folder(installRoot));
        found << discovery.folder(executablesRoot) << discovery.log.section(QLatin1Char('\n'), -1);
        return found.join(latin1(", ")).replace(QChar(0x85), QChar(0x2026));
    };
    const auto status = [](const QString &line) { return Discovery(line).folder(statusFolder); };
    const auto without = [](const QString &folder) {
        fs::remove_all(fs::path(folder.toStdWString()) / L"sub");
        Discovery discovery(latin1("X:\\t\\u\\a\\\\tool -kxRoot X:\\t\\s"));
        EXPECT_EQ(discovery.folder(installRoot).isEmpty(), !discovery.isFound);
        discovery.log.replace(QLatin1Char('\n'), QLatin1Char(' '));
        return (discovery.folder(installRoot) + discovery.log).trimmed();
    };
    expectResults("root_sources.txt", { { "-kxRoot", root },
                                        { "both roots", rootsAndLog },
                                        { "-loadstatus", status },
                                        { "without", without } });
    EXPECT_FALSE(Discovery(QString()).isFound); // with an argc of 0
}

TEST(RelinkFile, MustOpen)
{
    const ScratchFolder scratch({ L"r\\sub\\cfg_global\\relink_win.cfg" });
    const auto held = holdOpen(L"X:\\t\\r\\sub\\cfg_global\\relink_win.cfg");
    EXPECT_FALSE(Discovery(latin1("tool -kxRoot X:\\t\\r")).isFound);
}

/// The folders of an installation of debug builds.
InstallPaths layoutWith(const char *status, bool fromExeRoot, const char *renderApps, bool win64)
{
    InstallPaths paths;
    paths.entries[installRoot].assignNarrow("X:\\data_Debug\\");
    paths.entries[executablesRoot].assignNarrow("Y:\\prog_Debug\\");
    paths.entries[statusFolder].assignNarrow(status);
    char *argv[] = { nullptr };
    buildInstallLayout(paths, 1, argv, fromExeRoot, fromExeRoot,
                       fixedText<FixedNarrowString100>(renderApps), win64);
    return paths;
}

TEST(InstallLayout, HasThirtyNineFolders)
{
    qputenv("SystemDrive", "Q:"); // no matter, because there is a drive C:
    const InstallPaths layouts[] = { layoutWith("X:\\status\\", false, "X:\\no", true),
                                     layoutWith("", true, "", false),
                                     layoutWith("", true, "X:/unit", true) };
    const QList<QStringList> rows = rowsOf("install_layout.txt");
    EXPECT_EQ(39, rows.size());
    for (const QStringList &row : rows) {
        SCOPED_TRACE(plain(row.join(latin1(" | "))));
        for (int layout = 0; layout < 3; ++layout)
            EXPECT_EQ(row.at(qMin(layout + 1, row.size() - 1)),
                      layouts[layout].entries[row.at(0).toInt()].toQString());
    }
}

TEST(AppPath, FollowsItsTable)
{
    const auto narrow = [](const QString &text) {
        FixedNarrowString250 path;
        path.assignLatin1(text);
        return path;
    };
    const auto parent = [&narrow](const QString &text) {
        FixedNarrowString250 path = narrow(text);
        return parentFolderNarrow(path).toQString();
    };
    const auto absolute = [&narrow](const QString &text) { // "path in current folder"
        const QStringList paths = text.split(latin1(" in "));
        return absoluteProgramPath(narrow(paths.at(0)), narrow(paths.at(1))).toQString();
    };
    const auto programFiles = [](const QString &folderOf64BitPrograms) {
        qputenv("ProgramW6432", folderOf64BitPrograms.toLatin1());
        return getEnv(latin1("PROGRAMFILES"));
    };
    qputenv("ProgramFiles", "X:\\32");
    expectResults("program_paths.txt", { { "parentFolderNarrow", parent },
                                         { "absoluteProgramPath", absolute },
                                         { "getEnv", programFiles } });
}

} // namespace
