#include "install/app_path.h"
#include "install/install_root.h"
#include "install/root_discovery.h"

#include "support/files.h"
#include "support/text_printing.h"

#include <QStringList>

#include <gmock/gmock.h>

#include <cstdlib>

namespace {

void setEnv(const wchar_t *name, const QString &value)
{
    _wputenv_s(name, value.toStdWString().c_str()); // an empty value unsets it
}

void writeFile(const QString &path, const QByteArray &content)
{
    fs::create_directories(fs::path(path.toStdWString()).parent_path());
    std::FILE *file = _wfopen(path.toStdWString().c_str(), L"wb");
    std::fwrite(content.constData(), 1, static_cast<std::size_t>(content.size()), file);
    std::fclose(file);
}

/// Makes a folder of the scratch folder a root.
QString makeRoot(const QString &name)
{
    QString root = q("X:\\scratch\\") + name + q("\\");
    fs::create_directories((root + q("sub\\cfg_global")).toStdWString());
    return root;
}

/// Nothing of the machine's own environment. This program runs as
/// X:\apps\bin\win64\install_test.exe, so X:\apps is its own root when that is asked for.
struct Surroundings
{
    explicit Surroundings(bool isInstalled = false)
    {
        for (const wchar_t *name :
             { L"KX_ROOT", L"KX_ROOT_INSTALLER", L"ProgramFiles", L"ProgramW6432", L"SystemDrive" })
            setEnv(name, QString());
        fs::remove_all(L"X:\\apps\\sub");
        if (isInstalled)
            fs::create_directories(L"X:\\apps\\sub\\cfg_global");
    }
    ~Surroundings() { fs::remove_all(L"X:\\apps\\sub"); }
    Surroundings(const Surroundings &) = delete;
    Surroundings &operator=(const Surroundings &) = delete;

    ScratchFolder scratch;
};

/// What is found with these arguments, the program's name first; a "|" separates them.
struct Found
{
    explicit Found(const QString &arguments, const char *override = "", bool globalConfig = false,
                   bool renderApps = false, bool win64Binaries = true)
    {
        QList<QByteArray> bytes = arguments.toLatin1().split('|');
        std::vector<char *> argv;
        for (QByteArray &argument : bytes)
            argv.push_back(argument.data());
        const int argc = arguments.isEmpty() ? 0 : static_cast<int>(argv.size());
        result = findInstallRoot(paths, argc, argv.data(), log, outside, globalConfig, renderApps,
                                 fixedText<FixedNarrowString100>(override), win64Binaries);
    }

    QString entry(int index) const { return paths.entries[index].toQString(); }

    bool result;
    bool outside = false;
    QString log;
    InstallPaths paths;
};

TEST(RootDiscovery, TakesTheFirstValidSource)
{
    enum { flag, installer, folder, name, variable, sourceCount };
    const char *const heads[] = { "\n[-kxRoot flag: ", "\n[KX_ROOT_INSTALLER: ", "\n[appPath: ", "",
                                  "\n[KX_ROOT: " };
    for (int sources = 0; sources < 1 << sourceCount; ++sources) {
        SCOPED_TRACE(sources);
        const auto has = [sources](int source) { return (sources >> source & 1) != 0; };
        const Surroundings surroundings(has(folder));
        QString roots[sourceCount + 1];
        for (int source = 0; source < sourceCount; ++source)
            roots[source] = has(source) ? makeRoot(q("%1").arg(source)) : q("X:\\scratch\\none\\");
        roots[folder] = q("X:\\apps\\");
        setEnv(L"KX_ROOT_INSTALLER", roots[installer]);
        setEnv(L"KX_ROOT", roots[variable]);

        QString log;
        int first = 0;
        while (first < sourceCount && !has(first))
            log += first == name ? q("") : q(heads[first]) + roots[first] + q(": invalid]"),
                ++first;
        if (first < sourceCount && first != name)
            log += q(heads[first]) + roots[first] + q(first == flag ? ": VALID!]" : "]");
        if (first < folder) // tested and noted once more
            log += q(heads[folder]) + roots[first] + q("]");
        const Found found(roots[name] + q("bin\\win64\\tool.exe|-kxRoot|") + roots[flag]);
        EXPECT_EQ(log, found.log);
        EXPECT_EQ(first < sourceCount, found.result);
        EXPECT_EQ(roots[first], found.entry(installRoot));
        EXPECT_EQ(roots[first], found.entry(executablesRoot));
        EXPECT_EQ(first == flag, found.outside);
    }
    const Surroundings surroundings(true);
    const QString root = makeRoot(q("r"));
    EXPECT_FALSE(Found(root + q("tool|-kxRoot|") + root).outside);
    EXPECT_FALSE(Found(q("tool|-kxRoot|") + root).outside);
    const Found found = Found(QString()); // no argument, not even the name
    EXPECT_EQ(q("X:\\apps\\"), found.entry(installRoot));
    EXPECT_EQ(q(""), found.entry(programFolder));
}

TEST(RootDiscovery, TakesFlagAndVariableAsTheyCome)
{
    // Arguments, KX_ROOT_INSTALLER, log, root.
    const char *const rows[][4] = {
        { "-KXROOTFOLDER|X:/scratch/r", "",
          "\n[-kxRoot flag: X:/scratch/r\\: VALID!]\n[appPath: X:\\scratch\\r\\]",
          "X:\\scratch\\r\\" },
        { "-kxRoot|scratch\\r", "",
          "\n[-kxRoot flag: scratch\\r\\: VALID!]\n[appPath: scratch\\r\\]", "scratch\\r\\" },
        { "-kxRoot", "X:/scra\rtch/r\r",
          "\n[-kxRoot flag: : invalid]\n[KX_ROOT_INSTALLER: X:/scratch/r\\]"
          "\n[appPath: X:\\scratch\\r\\]",
          "X:\\scratch\\r\\" },
        { "-kxRoot|X:\\scratch\\&#228;&amp;/", "",
          "\n[-kxRoot flag: X:\\scratch\\\xE4&/: VALID!]\n[appPath: X:\\scratch\\\xE4&\\]",
          "X:\\scratch\\\xE4&\\" },
        { "-kxRoot|-kxRoot|X:\\scratch\\r|-kxRoot", "",
          "\n[-kxRoot flag: -kxRoot\\X:\\scratch\\r\\: VALID!]\n[appPath: X:\\scratch\\r\\]",
          "X:\\scratch\\r\\" },
        { "-kxRoot|X:\\scratch\\_internal_r", "",
          "\n[-kxRoot flag: X:\\scratch\\_internal_r\\: VALID!]\n[appPath: X:\\scratch\\_r\\]",
          "X:\\scratch\\_r\\" },
        { "-kxRoot|X:\\scratch/_internal_r", "",
          "\n[-kxRoot flag: X:\\scratch/_internal_r\\: VALID!]"
          "\n[appPath: X:\\scratch\\_internal_r\\]",
          "X:\\scratch\\_internal_r\\" },
        { "-kxRoot|X:\\scratch\\r_internal_", "",
          "\n[-kxRoot flag: X:\\scratch\\r_internal_\\: VALID!]"
          "\n[appPath: X:\\scratch\\r_internal_\\]",
          "X:\\scratch\\r_internal_\\" },
        { "-kxRoot|", "X:\\scratch\\r\\bin\\win64",
          "\n[-kxRoot flag: \\: invalid]\n[KX_ROOT_INSTALLER: X:\\scratch\\r\\bin\\win64\\: "
          "invalid]"
          "\n[appPath: X:\\apps\\: invalid]\n[KX_ROOT: : invalid]",
          "" },
    };
    fs::current_path(L"X:\\");
    for (const auto &row : rows) {
        SCOPED_TRACE(row[0]);
        const Surroundings surroundings;
        for (const char *name : { "r", "\xE4&", "_internal_r", "_r", "r_internal_" })
            makeRoot(q(name));
        setEnv(L"KX_ROOT_INSTALLER", q(row[1]));
        const Found found(q("tool|") + q(row[0]));
        EXPECT_EQ(q(row[2]), found.log);
        EXPECT_EQ(q(row[3]), found.entry(installRoot));
        EXPECT_EQ(*row[3] != '\0', found.result);
    }
    const Surroundings surroundings;
    const QString root = makeRoot(run(249));
    EXPECT_EQ(root.left(250), Found(q("tool|-kxRoot|") + root).entry(installRoot));
    for (const char *below : { "sub\\cfg_global", "sub", "" }) // too long for remove_all
        RemoveDirectoryW((root + q(below)).toStdWString().c_str());
}

TEST(RootDiscovery, FollowsTheRelinkFile)
{
    // Content, what it adds to the log, root, root of the executables if that is another.
    const QString rows[][4] = {
        { q("  root = Y:\\d  \r\nExeRoot=Y:\\b"), q("\n[Relink Y:\\d\\: invalid]"), q("Y:\\d\\") },
        { q("RootFolder=Y:\\d\\"), q("\n[Relink Y:\\d\\: invalid]"), q("Y:\\d\\") },
        { q("Root=X:/scratch/a/\n"), q("\n[Relink X:/scratch/a/\\]"), q("X:/scratch/a/\\") },
        { q("Root=X:\\scratch\\r\\a_KX9"), q("\n[Relink X:\\scratch\\r\\a_KX9\\]"),
          q("X:\\scratch\\r\\a_KX9\\") },
        { q("Root=") + run(249), q("\n[Relink ") + run(249) + q("\\: invalid]"),
          run(249) + q("\\") },
        { q("Root=") + run(251), q("\n[Relink ") + run(250) + q(": invalid]"), run(250) },
        { q("exeroot = Y:\\b=\nRoot=Y:\\d"), q(""), q(""), q("Y:\\b=") },
        { q("Data=Y:\\d"), q(""), q("") },
        { q("Root Y:\\d"), q(""), q("") },
        { q("Root="), q(""), q("") },
        { q(""), q(""), q("") },
        { q("\r\nRoot=Y:\\d"), q(""), q("") },
    };
    const Surroundings surroundings;
    makeRoot(q("a"));
    makeRoot(q("r\\a_KX9"));
    const QString root = makeRoot(q("r"));
    const QString relink = root + q("sub\\cfg_global\\relink_win.cfg");
    const QString log = q("\n[-kxRoot flag: ") + root + q(": VALID!]\n[appPath: ") + root + q("]");
    for (const auto &row : rows) {
        SCOPED_TRACE(row[0].toStdString());
        writeFile(relink, row[0].toLatin1());
        const Found found(q("tool|-kxRoot|") + root);
        EXPECT_TRUE(found.result);
        EXPECT_EQ(log + row[1], found.log);
        EXPECT_EQ(row[2], found.entry(installRoot));
        EXPECT_EQ(row[3].isEmpty() ? root : row[3], found.entry(executablesRoot));
    }
    const HANDLE held = CreateFileW(relink.toStdWString().c_str(), GENERIC_READ, 0, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    const Found unreadable(q("tool|-kxRoot|") + root);
    CloseHandle(held);
    EXPECT_FALSE(unreadable.result);
    EXPECT_EQ(log, unreadable.log);
    EXPECT_EQ(q(""), unreadable.entry(installRoot));
    EXPECT_EQ(root, unreadable.entry(executablesRoot));
    EXPECT_EQ(q(""), unreadable.entry(binFolder));
}

TEST(RootDiscovery, LeavesAVersionFolderAndReadsTheStatusFolder)
{
    // Folder of the root, what follows -loadstatus, root, status folder.
    const QString rows[][4] = {
        { q("r\\a_kx9"), q("../st"), q("X:\\scratch\\r\\"), q("X:\\scratch\\st\\") },
        { q("n\\_KX9"), q("D:\\st\""), q("X:\\scratch\\n\\_KX9\\"), q("D:\\st\\") },
        { q("r"), q(""), q("X:\\scratch\\r\\"), q("\\") },
        { q("r"), q("a|-LoadStatusX|&#228;/"), q("X:\\scratch\\r\\"), q("\xE4/\\") },
        { q("r"), run(249), q("X:\\scratch\\r\\"), run(249) + q("\\") },
        { q("r"), run(251), q("X:\\scratch\\r\\"), run(250) },
        // "X:\scratch\r\..\" takes 16 of the 250 units.
        { q("r"), q("..\\") + run(300), q("X:\\scratch\\r\\"), q("X:\\scratch\\") + run(234) },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row[1].toStdString());
        const Surroundings surroundings;
        makeRoot(q("r"));
        const QString root = makeRoot(row[0]);
        const Found found(q("tool|-kxRoot|") + root + q("|-loadstatus|") + row[1]);
        EXPECT_EQ(row[2], found.entry(installRoot));
        EXPECT_EQ(root, found.entry(executablesRoot));
        EXPECT_EQ(row[3], found.entry(statusFolder));
        EXPECT_TRUE(found.log.endsWith(q("[appPath: ") + root + q("]")));
    }
}

TEST(InstallLayout, DerivesAllFolders)
{
    // R, E: the two roots. J: above the job data. S: the status folder. C: the root that the
    // second global configuration is below. A, O: above the settings of the render applications
    // that may move, and of the others. P: the root of the plugins. L: local data. W: win or win64.
    const QString layout =
        q("R|Ebin\\win\\|Rsub\\|Rsub\\cfg_global\\|Rsub\\cfg_user\\|JkxJobdata\\|Rautoload\\|"
          "Lrenderscripts\\|Rsub\\cfg_website_templates\\|A_config\\|A_prepost_scripts\\|"
          "O_setenv\\win\\|O_install_paths\\|O_submitplugins\\|Esub\\log\\|Rsub\\history_db\\|"
          "Eplugins64\\server_jobs\\|Eplugins64\\server_notify\\|Ebin\\W\\|Eplugins64\\image\\|"
          "Eplugins64\\submitter_sceneparser\\|L|Ltextures\\|Lrenderer_exe\\|Ltemp\\|Lrenderout\\|"
          "Lcachedscenes\\|Lrenderer_prefs\\||E|S|Rsub\\stats\\|Pplugins\\|X:\\apps\\bin\\win64\\|"
          "Csub\\cfg_global\\|O_setenv\\all\\|Ascripts\\|Esub_user\\log\\|L_kxServer\\");
    const struct
    {
        const char *arguments;
        const char *relink;
        const char *override;
        bool globalConfig;
        bool renderApps;
        bool win64Binaries;
        const char *folders; // what the letters stand for: R and E, and where nothing else is said,
                             // J, C, P and A, O (with render_apps) are those
    } rows[] = {
        { "X:\\s", nullptr, "", false, false, true, "R=X:\\s\\|E=X:\\s\\" },
        { "X:\\s_Debug|-loadstatus|..\\st", nullptr, "X:\\nothing", false, false, false,
          "R=X:\\s_release\\|E=X:\\s_Debug\\|J=X:\\st\\|S=X:\\st\\|P=X:\\s_release\\|W=win" },
        { "X:\\s", "Root=Y:\\d", "", true, false, true, "R=Y:\\d\\|E=X:\\s\\|C=X:\\s\\" },
        { "X:\\s", "Root=Y:\\d", "", false, true, true,
          "R=Y:\\d\\|E=X:\\s\\|A=X:\\s\\render_apps\\" },
        { "X:\\s", "Root=Y:\\d", "X:/apps", true, true, true,
          "R=Y:\\d\\|E=X:\\s\\|C=X:\\s\\|A=X:\\apps\\|O=X:\\apps\\" },
        { "X:\\s", "ExeRoot=Y:\\d\\", "X:\\apps\\", false, false, true,
          "R=|E=Y:\\d\\|A=X:\\apps\\|O=X:\\apps\\" },
    };
    for (const auto &row : rows) {
        const Surroundings surroundings;
        const QString root = q(row.arguments).section(QLatin1Char('|'), 0, 0);
        fs::create_directories((root + q("\\sub\\cfg_global")).toStdWString());
        if (row.relink != nullptr)
            writeFile(root + q("\\sub\\cfg_global\\relink_win.cfg"), row.relink);
        const Found found(q("tool|-kxRoot|") + q(row.arguments), row.override, row.globalConfig,
                          row.renderApps, row.win64Binaries);
        fs::remove_all(root.toStdWString());

        const auto folder = [&row](const char *letter, const QString &otherwise) {
            for (const QString &entry : q(row.folders).split(QLatin1Char('|')))
                if (entry.startsWith(q(letter) + q("=")))
                    return entry.mid(2);
            return otherwise;
        };
        const QString data = folder("R", q(""));
        const QString programs = folder("E", q(""));
        const QString apps = data + q("render_apps\\");
        const QString folders[] = { data,
                                    programs,
                                    folder("J", data),
                                    folder("S", q("")),
                                    folder("C", data),
                                    folder("A", apps),
                                    folder("O", apps),
                                    folder("P", programs),
                                    q("C:\\KX_localdata\\") };
        QStringList expected = layout.split(QLatin1Char('|'));
        ASSERT_EQ(39, expected.size());
        for (int i = 0; i < 39; ++i) {
            QString text = expected.at(i);
            text.replace(q("\\W\\"), q("\\") + folder("W", q("win64")) + q("\\"));
            const int letter = text.isEmpty() ? -1 : q("REJSCAOPL").indexOf(text.at(0));
            if (letter >= 0)
                text.replace(0, 1, folders[letter]);
            EXPECT_EQ(text, found.entry(i)) << "entry " << i << ", " << row.folders;
        }
    }
}

TEST(InstallRoot, IsKnownByAnyOfItsFiles)
{
    const struct
    {
        const char *file;
        const char *root;
        bool isValid;
    } rows[] = {
        { "r\\bin\\win64\\kxClientconsole.exe", "r\\", true },
        { "r\\bin\\win64\\kxServerconsole.exe", "r\\", true },
        { "r\\bin\\win64\\kxControl.exe", "r\\", true },
        { "r\\bin\\win64\\kxDeleteOldFiles.exe", "r\\", false },
        { "r\\sub\\cfg_global", "r\\", false }, // a file
        { "r_release_release\\sub\\cfg_global\\relink_win.cfg", "r_debug_debug\\", true },
        { "r_release\\sub\\cfg_global\\relink_win.cfg", "r_DEBUG\\", false },
        { "r_release\\bin\\win64\\kxControl.exe", "r_debug\\", false },
    };
    for (const auto &row : rows) {
        const ScratchFolder scratch;
        writeFile(q("X:\\scratch\\") + q(row.file), "");
        EXPECT_EQ(row.isValid, isValidRoot(q("X:\\scratch\\") + q(row.root))) << row.file;
    }
    EXPECT_FALSE(isValidRoot(QString()));
    // The twin of a debug build is where its relink file is read too.
    const Surroundings surroundings;
    writeFile(q("X:\\scratch\\r_release\\sub\\cfg_global\\relink_win.cfg"), "Root=Y:\\d");
    const Found found(q("tool|-kxRoot|X:\\scratch\\r_debug"));
    EXPECT_EQ(q("Y:\\d\\"), found.entry(installRoot));
}

TEST(AppPath, GoesUpFromFoldersAndPrograms)
{
    // clang-format off
    const char *const parents[][2] = {
        { "X:\\a\\b\\", "X:\\a\\" }, { "X:\\a", "X:\\" }, { "X:\\", "X:\\" }, { "X:", "X:" },
        { "abc", "abc\\" }, { "\\\\s\\share\\", "\\\\s\\share\\" },
        { "\\\\s\\share\\d\\", "\\\\s\\share\\" },
    };
    // clang-format on
    for (const auto &row : parents) {
        auto path = fixedText<FixedNarrowString250>(row[0]);
        EXPECT_EQ(q(row[1]), parentFolderNarrow(path).toQString()) << row[0];
    }
    auto full = fixedText<FixedNarrowString250>(QByteArray(250, 'a').constData());
    EXPECT_EQ(run(250, 'a'), parentFolderNarrow(full).toQString());

    // Path, current folder, result.
    // clang-format off
    const char *const programs[][3] = {
        { "bin\\tool.exe", "X:\\suite", "X:\\suite\\bin\\tool.exe" },
        { "..\\win64\\tool.exe", "X:\\suite\\bin\\x64", "X:\\suite\\bin\\win64\\tool.exe" },
        { "a\\..\\..\\b\\x.exe", "X:\\1\\2\\3\\", "X:\\1\\b\\x.exe" },
        { "a\\x.exe", "X:\\", "a\\x.exe" }, { "a\\x.exe", "X:\\b", "X:\\b\\a\\x.exe" },
        { "tool.exe", "X:\\suite", "tool.exe" }, { "Y:\\x", "X:\\suite", "Y:\\x" },
        { "\\a\\x", "X:\\suite", "\\a\\x" }, { "a\\x", "X:\\suite", "" },
    };
    // clang-format on
    for (const auto &row : programs) {
        const auto path = fixedText<FixedNarrowString250>(row[0]);
        const auto current = fixedText<FixedNarrowString250>(row[1]);
        EXPECT_EQ(q(row[2]), absoluteProgramPath(path, current).toQString()) << row[0];
    }
    const Surroundings surroundings;
    EXPECT_EQ(q(""), getEnv(q("programfiles")));
    setEnv(L"ProgramFiles", q("X:\\32"));
    EXPECT_EQ(q("X:\\32"), getEnv(q("ProgramFiles")));
    setEnv(L"ProgramW6432", q("X:\\64"));
    EXPECT_EQ(q("X:\\64"), getEnv(q("PROGRAMFILES")));
}

} // namespace
