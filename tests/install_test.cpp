#include "install/app_path.h"
#include "install/root_discovery.h"
#include "install/root_validation.h"

#include "support/scratch.h"
#include "support/text.h"

#include <vector>

namespace {

void setEnv(const wchar_t *name, const char *value) // an empty value unsets it
{
    _wputenv_s(name, latin1(value).toStdWString().c_str());
}

void makeRoot(const fs::path &root) { fs::create_directories(root / L"sub\\cfg_global"); }

/// The roots X:\t\r and X:\t\s, and nothing of the machine's own environment. This program is
/// X:\unit\bin\win64\install_test.exe.
struct Roots : ScratchFolder
{
    Roots()
    {
        for (const wchar_t *name : { L"KX_ROOT", L"KX_ROOT_INSTALLER", L"ProgramW6432" })
            setEnv(name, "");
        makeRoot(path / L"r");
        makeRoot(path / L"s");
        fs::remove_all(L"X:\\unit\\sub");
    }
};

/// The results of findInstallRoot for the arguments of a command line that is split at its blanks.
struct Discovery
{
    explicit Discovery(const QString &commandLine)
    {
        QList<QByteArray> arguments = commandLine.toLatin1().split(' ');
        std::vector<char *> argv;
        for (int i = 0; i < arguments.size() && !commandLine.isEmpty(); ++i)
            argv.push_back(arguments[i].data());
        isFound = findInstallRoot(paths, static_cast<int>(argv.size()), argv.data(), log, isOutside,
                                  false, false, FixedNarrowString100(), true);
    }
    QString folder(InstallEntry entry) const { return paths.entries[entry].toQString(); }

    InstallPaths paths;
    QString log;
    bool isOutside = false;
    bool isFound;
};

TEST(RootDiscovery, TakesTheFirstValidSource)
{
    struct Row
    {
        const char *name, *commandLine, *installer;
        bool programFolderIsRoot;
        const char *variable, *root, *log;
    };
    const Row rows[] = {
        { "flag", "tool -kxRoot X:\\t\\r", "X:\\t\\s", true, "X:\\t\\s", "X:\\t\\r\\",
          "\n[-kxRoot flag: X:\\t\\r\\: VALID!]\n[appPath: X:\\t\\r\\]" },
        { "installer", "tool -kxRoot X:\\no", "X:\\t\\s", true, "X:\\t\\r", "X:\\t\\s\\",
          "\n[-kxRoot flag: X:\\no\\: invalid]\n[KX_ROOT_INSTALLER: X:\\t\\s\\]"
          "\n[appPath: X:\\t\\s\\]" },
        { "program folder", "X:\\t\\r\\a\\b\\tool", "X:\\no", true, "X:\\t\\s", "X:\\unit\\",
          "\n[-kxRoot flag: : invalid]\n[KX_ROOT_INSTALLER: X:\\no\\: invalid]"
          "\n[appPath: X:\\unit\\]" },
        { "program name, with a doubled backslash for a folder", "X:\\t\\r\\a\\\\tool", "", false,
          "X:\\t\\s", "X:\\t\\r\\",
          "\n[-kxRoot flag: : invalid]\n[KX_ROOT_INSTALLER: : invalid]"
          "\n[appPath: X:\\unit\\: invalid]" },
        { "variable", "X:\\t\\r\\a\\tool", "", false, "X:/t/s", "X:/t/s\\",
          "\n[-kxRoot flag: : invalid]\n[KX_ROOT_INSTALLER: : invalid]"
          "\n[appPath: X:\\unit\\: invalid]\n[KX_ROOT: X:/t/s\\]" },
        { "none", "tool", "", false, "", "",
          "\n[-kxRoot flag: : invalid]\n[KX_ROOT_INSTALLER: : invalid]"
          "\n[appPath: X:\\unit\\: invalid]\n[KX_ROOT: : invalid]" },
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const Roots roots;
        if (row.programFolderIsRoot)
            makeRoot(L"X:\\unit");
        setEnv(L"KX_ROOT_INSTALLER", row.installer);
        setEnv(L"KX_ROOT", row.variable);
        const Discovery discovery(latin1(row.commandLine));
        EXPECT_EQ(row.root[0] != '\0', discovery.isFound);
        EXPECT_EQ(latin1(row.root), discovery.folder(installRoot));
        EXPECT_EQ(latin1(row.log), discovery.log);
    }
}

TEST(RootFlag, TakesItsValueAsItComes)
{
    const Roots roots;
    for (const wchar_t *root : { L"\x00E4&", L"_internal_r", L"_r", L"r\\a_kx9", L"n\\_KX9" })
        makeRoot(roots.path / root);
    setEnv(L"KX_ROOT_INSTALLER", "X:/\rt/r\r"); // the next source
    const auto root = [](const QString &commandLine) {
        const Discovery discovery(commandLine);
        return discovery.folder(installRoot) + latin1(discovery.isOutside ? " outside" : "");
    };
    expectResults(
        { { "any case and ending", "tool -KXROOTx X:/t/s", R"(X:\t\s\)" },
          { "the last flag", R"(tool -kxRoot -kxRoot X:\t\s)", R"(X:\t\s\)" },
          { "no value", "tool -kxRoot", R"(X:\t\r\)" },
          { "a program of that name", R"(-kxRoot X:\t\s)", R"(X:\t\r\)" },
          { "no root", R"(tool -kxRoot X:\t)", R"(X:\t\r\)" },
          { "entities", R"(tool -kxRoot X:\t\&#228;&amp;/)", "X:\\t\\\xE4&\\" },
          { "an internal folder", R"(tool -kxRoot X:\t\_internal_r)", R"(X:\t\_r\)" },
          { "the same after a slash", "tool -kxRoot X:/t/_internal_r", R"(X:\t\_internal_r\)" },
          { "a version's folder in a root", R"(tool -kxRoot X:\t\r\a_kx9)", R"(X:\t\r\)" },
          { "a version's folder", R"(tool -kxRoot X:\t\n\_KX9\)", R"(X:\t\n\_KX9\)" },
          { "a program in the root", R"(X:\t\s\tool -kxRoot X:\t\s)", R"(X:\t\s\)" },
          { "a program elsewhere", R"(X:\t\r\tool -kxRoot X:\t\s)", R"(X:\t\s\ outside)" } },
        root);
}

TEST(StatusFlag, IsRelativeToTheRootWithTwoDots)
{
    const Roots roots;
    makeRoot(L"X:\\unit");
    const auto status = [](const QString &line) { return Discovery(line).folder(statusFolder); };
    expectResults(
        { { "entities, and the last flag", "tool -loadstatus a -LoadStatusX &lt;/", "</\\" },
          { "a quote", R"(tool -loadstatus D:\s")", R"(D:\s\)" },
          { "an empty value", "tool -loadstatus ", "\\" },
          { "a folder beside the root", "tool -loadstatus ../s", R"(X:\s\)" },
          { "a program of that name", "-loadstatus a", "" } },
        status);
    // "X:\unit\..\" takes 11 of the 250 units.
    EXPECT_EQ(latin1("X:\\") + repeated(239),
              status(latin1("tool -loadstatus ..\\") + repeated(300)));
}

TEST(RootDiscovery, NeedsNoArguments)
{
    const Roots roots;
    makeRoot(L"X:\\unit");
    const Discovery discovery(latin1("")); // argc is 0, argv is null
    EXPECT_EQ(latin1("X:\\unit\\"), discovery.folder(installRoot));
    EXPECT_EQ(latin1(""), discovery.folder(programFolder));
}

TEST(RelinkFile, MovesARootByItsFirstLine)
{
    const Roots roots;
    const auto relinked = [](const QString &content) {
        makeFile(L"X:\\t\\r\\sub\\cfg_global\\relink_win.cfg", 0, content.toLatin1().constData());
        const Discovery discovery(latin1("tool -kxRoot X:\\t\\r"));
        return discovery.folder(installRoot) + latin1(", ") + discovery.folder(executablesRoot)
               + discovery.log.mid(discovery.log.lastIndexOf(QLatin1Char('\n')));
    };
    expectResults(
        { { "blanks", "  root = Y:\\d  \nExeRoot=Y:\\b",
            "Y:\\d\\, X:\\t\\r\\\n[Relink Y:\\d\\: invalid]" },
          { "a valid root", "RootFolder=X:/t/s/", "X:/t/s/\\, X:\\t\\r\\\n[Relink X:/t/s/\\]" },
          { "the other root", "exeroot=Y:\\b=", ", Y:\\b=\n[appPath: X:\\t\\r\\]" },
          { "no sign", "Root Y:\\d", ", X:\\t\\r\\\n[appPath: X:\\t\\r\\]" },
          { "no value", "Root=", ", X:\\t\\r\\\n[appPath: X:\\t\\r\\]" },
          { "byte 0x85, which is no white space", "Root=Y:\\d\x85",
            "Y:\\d\x85\\, X:\\t\\r\\\n[Relink Y:\\d\x85\\: invalid]" } },
        relinked);
    const auto held = holdOpen(L"X:\\t\\r\\sub\\cfg_global\\relink_win.cfg");
    const Discovery unreadable(latin1("tool -kxRoot X:\\t\\r"));
    EXPECT_FALSE(unreadable.isFound);
    EXPECT_EQ(latin1(""), unreadable.folder(installRoot));
}

TEST(InstallRoot, IsKnownByAnyOfItsFiles)
{
    for (const wchar_t *file :
         { L"sub\\cfg_global\\globalconfig.ini", L"bin\\win64\\kxControl.exe",
           L"bin\\win64\\kxClientconsole.exe", L"bin\\win64\\kxServerconsole.exe" }) {
        const ScratchFolder scratch;
        makeFile(scratch.path / file, 0);
        EXPECT_TRUE(isValidRoot(latin1("X:\\t\\"))) << testing::PrintToString(file);
    }
    EXPECT_FALSE(isValidRoot(latin1("X:\\t\\")));
    EXPECT_FALSE(isValidRoot(QString()));
}

TEST(InstallRoot, OfADebugBuildHasTheRelinkFileOfItsReleaseBuild)
{
    const Roots roots;
    makeFile(L"X:\\t\\d_release\\sub\\cfg_global\\relink_win.cfg", 0, "Root=Y:\\d");
    EXPECT_FALSE(isValidRoot(latin1("X:\\t\\d_DEBUG\\")));
    const Discovery debugBuild(latin1("tool -kxRoot X:\\t\\d_debug"));
    EXPECT_EQ(latin1("Y:\\d\\"), debugBuild.folder(installRoot));
}

/// The folders of an installation of debug builds.
QStringList layoutWith(const char *status, bool fromExeRoot, const char *renderApps, bool win64)
{
    InstallPaths paths;
    paths.entries[installRoot].assignQString(latin1("X:\\data_Debug\\"));
    paths.entries[executablesRoot].assignQString(latin1("Y:\\prog_Debug\\"));
    paths.entries[statusFolder].assignQString(latin1(status));
    char *argv[] = { nullptr };
    buildInstallLayout(paths, 1, argv, fromExeRoot, fromExeRoot,
                       fixedText<FixedNarrowString100>(renderApps), win64);
    QStringList folders;
    for (const FixedWideString250 &folder : paths.entries)
        folders << folder.toQString();
    return folders;
}

TEST(InstallLayout, HasThirtyNineFolders)
{
    const QStringList expected = linesOf("install_layout.txt");
    const QStringList folders = layoutWith("X:\\status\\", false, "X:\\no", true);
    ASSERT_EQ(39, expected.size());
    for (int entry = 0; entry < 39; ++entry)
        EXPECT_EQ(expected.at(entry).mid(3), folders.at(entry)) << "entry " << entry;
}

TEST(InstallLayout, HasOptions)
{
    QStringList folders = layoutWith("", true, "", false);
    EXPECT_EQ(latin1("X:\\data_release\\kxJobdata\\"), folders.at(jobData));
    EXPECT_EQ(latin1("Y:\\prog_Debug\\bin\\win\\"), folders.at(bin64Folder));
    EXPECT_EQ(latin1("Y:\\prog_Debug\\sub\\cfg_global\\"), folders.at(globalConfigOfPrograms));
    EXPECT_EQ(latin1("Y:\\prog_Debug\\render_apps\\scripts\\"), folders.at(renderAppScripts));
    EXPECT_EQ(latin1("X:\\data_release\\render_apps\\_setenv\\win\\"), folders.at(setEnvWindows));
    folders = layoutWith("", true, "X:/unit", true);
    EXPECT_EQ(latin1("X:\\unit\\scripts\\"), folders.at(renderAppScripts));
    EXPECT_EQ(latin1("X:\\unit\\_setenv\\win\\"), folders.at(setEnvWindows));
}

TEST(AppPath, GoesUpFromFoldersAndPrograms)
{
    expectResults({ { "a folder", R"(X:\a\b\)", R"(X:\a\)" },
                    { "a drive", R"(X:\)", R"(X:\)" },
                    { "a folder of a drive", R"(X:\a)", R"(X:\)" },
                    { "two bytes", "X:", "X:" },
                    { "a name of three bytes", "abc", R"(abc\)" },
                    { "a share", R"(\\s\share\)", R"(\\s\share\)" },
                    { "a folder of a share", R"(\\s\share\d\)", R"(\\s\share\)" },
                    { "three backslashes at the start", R"(\\\a\b)", R"(\\\a\)" } },
                  [](const QString &text) {
                      auto path = fixedText<FixedNarrowString250>(text.toLatin1().constData());
                      return parentFolderNarrow(path).toQString();
                  });
}

TEST(AppPath, IsRelativeToTheCurrentFolder)
{
    const auto inFolder = [](const char *path, const char *folder) {
        return absoluteProgramPath(fixedText<FixedNarrowString250>(path),
                                   fixedText<FixedNarrowString250>(folder))
            .toQString();
    };
    EXPECT_EQ(latin1("X:\\b\\a\\xy"), inFolder("a\\xy", "X:\\b"));
    EXPECT_EQ(latin1("X:\\1\\b\\x"), inFolder("..\\a\\..\\b\\x", "X:\\1\\2\\3\\"));
    EXPECT_EQ(latin1("a\\xy"), inFolder("a\\xy", "X:\\"));
    EXPECT_EQ(latin1("tool"), inFolder("tool", "X:\\b"));
    EXPECT_EQ(latin1("Y:\\x"), inFolder("Y:\\x", "X:\\b"));
    EXPECT_EQ(latin1("\\a\\x"), inFolder("\\a\\x", "X:\\b"));
    EXPECT_EQ(latin1(""), inFolder("a\\x", "X:\\b")); // too short
}

TEST(GetEnv, PrefersThe64BitProgramFiles)
{
    const Roots roots;
    setEnv(L"ProgramFiles", "X:\\32");
    EXPECT_EQ(latin1("X:\\32"), getEnv(latin1("ProgramFiles")));
    setEnv(L"ProgramW6432", "X:\\64");
    EXPECT_EQ(latin1("X:\\64"), getEnv(latin1("PROGRAMFILES")));
}

} // namespace
