#include "install/app_path.h"
#include "install/install_root.h"
#include "install/root_discovery.h"
#include "text/entities.h"

#include "support/files.h"
#include "support/text_printing.h"

#include <gmock/gmock.h>

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

/// Makes this folder of the scratch folder a root.
QString makeRoot(const char *name)
{
    const QString root = q("X:\\scratch\\") + q(name) + q("\\");
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

    ScratchFolder scratch;
};

/// What is found with these arguments, which a "|" separates.
struct Found
{
    explicit Found(const QString &arguments, const QString &argv0 = q("tool"),
                   bool fromPrograms = false, const char *override = "", bool win64Binaries = true)
    {
        QList<QByteArray> bytes = (argv0 + q("|") + arguments).toLatin1().split('|');
        std::vector<char *> argv;
        for (QByteArray &argument : bytes)
            argv.push_back(argument.data());
        result = findInstallRoot(paths, static_cast<int>(argv.size()), argv.data(), log, outside,
                                 fromPrograms, fromPrograms,
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
    const QString none = q("X:\\scratch\\none\\");
    for (int sources = 0; sources < 32; ++sources) {
        SCOPED_TRACE(sources);
        const bool inFlag = sources & 1;
        const bool inInstaller = sources & 2;
        const bool inFolder = sources & 4;
        const bool inName = sources & 8;
        const Surroundings surroundings(inFolder);
        const QString flag = inFlag ? makeRoot("flag") : none;
        const QString installer = inInstaller ? makeRoot("installer") : none;
        const QString folder = q("X:\\apps\\");
        const QString name = inName ? makeRoot("name") : none;
        const QString variable = sources & 16 ? makeRoot("variable") : none;
        setEnv(L"KX_ROOT_INSTALLER", installer);
        setEnv(L"KX_ROOT", variable);

        const Found found(q("-kxRoot|") + flag, name + q("bin\\win64\\tool.exe"));
        QString log = q("\n[-kxRoot flag: ") + flag + q(inFlag ? ": VALID!]" : ": invalid]");
        if (!inFlag)
            log += q("\n[KX_ROOT_INSTALLER: ") + installer + q(inInstaller ? "]" : ": invalid]");
        const QString early = inFlag ? flag : inInstaller ? installer : folder;
        const bool isEarly = inFlag || inInstaller || inFolder;
        log += q("\n[appPath: ") + early + q(isEarly ? "]" : ": invalid]");
        if (!isEarly && !inName)
            log += q("\n[KX_ROOT: ") + variable + q(sources & 16 ? "]" : ": invalid]");
        EXPECT_EQ(log, found.log);
        EXPECT_EQ(sources != 0, found.result);
        const QString root = isEarly ? early : inName ? name : sources ? variable : QString();
        EXPECT_EQ(root, found.entry(installRoot));
        EXPECT_EQ(root, found.entry(executablesRoot));
        EXPECT_EQ(inFlag, found.outside);
    }
}

TEST(RootDiscovery, TakesFlagAndVariableAsTheyCome)
{
    // Arguments, KX_ROOT_INSTALLER, log, root.
    const char *const rows[][4] = {
        { "-KXROOTFOLDER|X:/scratch/r", "",
          "\n[-kxRoot flag: X:/scratch/r\\: VALID!]\n[appPath: X:\\scratch\\r\\]",
          "X:\\scratch\\r\\" },
        { "-kx&#82;oot|X:\\scratch\\r", "X:/scratch/r\r", // no such entity
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
        { "-kxRoot|", "X:\\scratch\\r\\bin\\win64",
          "\n[-kxRoot flag: \\: invalid]\n[KX_ROOT_INSTALLER: X:\\scratch\\r\\bin\\win64\\: "
          "invalid]"
          "\n[appPath: X:\\apps\\: invalid]\n[KX_ROOT: : invalid]",
          "" },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row[0]);
        const Surroundings surroundings;
        for (const char *name : { "r", "\xE4&", "_internal_r", "_r" })
            makeRoot(name);
        setEnv(L"KX_ROOT_INSTALLER", q(row[1]));
        const Found found(q(row[0]));
        EXPECT_EQ(q(row[2]), found.log);
        EXPECT_EQ(q(row[3]), found.entry(installRoot));
        EXPECT_EQ(*row[3] != '\0', found.result);
    }
    const Surroundings surroundings;
    const QByteArray letters(249, 'l');
    const QString root = makeRoot(letters.constData());
    EXPECT_EQ(root.left(250), Found(q("-kxRoot|") + root).entry(installRoot));
    for (const char *below : { "sub\\cfg_global", "sub", "" }) // too long for remove_all
        RemoveDirectoryW((root + q(below)).toStdWString().c_str());
}

TEST(RootDiscovery, FollowsTheRelinkFile)
{
    // Content, what it adds to the log, root, root of the executables.
    const char *const rows[][4] = {
        { "  root = Y:\\d  \r\nExeRoot=Y:\\b", "\n[Relink Y:\\d\\: invalid]", "Y:\\d\\", nullptr },
        { "RootFolder=Y:\\d\\", "\n[Relink Y:\\d\\: invalid]", "Y:\\d\\", nullptr },
        { "Root=X:/scratch/new/\n", "\n[Relink X:/scratch/new/\\]", "X:/scratch/new/\\", nullptr },
        { "ExeRoot=Y:\\b=\nRoot=Y:\\d", "", "", "Y:\\b=" },
        { "Data=Y:\\d", "", "", nullptr },
        { "Root Y:\\d", "", "", nullptr },
        { "Root=", "", "", nullptr },
        { "", "", "", nullptr },
        { "\r\nRoot=Y:\\d", "", "", nullptr },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row[0]);
        const Surroundings surroundings;
        const QString root = makeRoot("r");
        makeRoot("new");
        const QString relink = root + q("sub\\cfg_global\\relink_win.cfg");
        const QString log =
            q("\n[-kxRoot flag: ") + root + q(": VALID!]\n[appPath: ") + root + q("]");
        writeFile(relink, row[0]);
        const Found found(q("-kxRoot|") + root);
        EXPECT_TRUE(found.result);
        EXPECT_EQ(log + q(row[1]), found.log);
        EXPECT_EQ(q(row[2]), found.entry(installRoot));
        EXPECT_EQ(row[3] ? q(row[3]) : root, found.entry(executablesRoot));

        const HANDLE held = CreateFileW(relink.toStdWString().c_str(), GENERIC_READ, 0, nullptr,
                                        OPEN_EXISTING, 0, nullptr);
        const Found unreadable(q("-kxRoot|") + root);
        CloseHandle(held);
        EXPECT_FALSE(unreadable.result);
        EXPECT_EQ(log, unreadable.log);
        EXPECT_EQ(q(""), unreadable.entry(installRoot));
        EXPECT_EQ(root, unreadable.entry(executablesRoot));
        EXPECT_EQ(q(""), unreadable.entry(binFolder));
    }
}

TEST(RootDiscovery, LeavesAVersionFolderAndReadsTheStatusFolder)
{
    // Folder of the root, what follows -loadstatus, root, status folder.
    const QString rows[][4] = {
        { q("r\\a_kx9"), q("..\\st"), q("X:\\scratch\\r\\"), q("X:\\scratch\\st\\") },
        { q("n\\_KX9"), q("D:\\st\""), q("X:\\scratch\\n\\_KX9\\"), q("D:\\st\\") },
        { q("r"), q("st&#228;\\"), q("X:\\scratch\\r\\"), q("st\xE4\\") },
        { q("r"), q(""), q("X:\\scratch\\r\\"), q("\\") },
        { q("r"), q("a|-LoadStatusX|b/"), q("X:\\scratch\\r\\"), q("b/\\") },
        { q("r"), run(300), q("X:\\scratch\\r\\"), run(250) },
        // "X:\scratch\r\..\" takes 16 of the 250 units.
        { q("r"), q("..\\") + run(300), q("X:\\scratch\\r\\"), q("X:\\scratch\\") + run(234) },
    };
    for (const auto &row : rows) {
        const Surroundings surroundings;
        makeRoot("r");
        const QString root = makeRoot(row[0].toLatin1().constData());
        const Found found(q("-kxRoot|") + root + q("|-loadstatus|") + row[1]);
        EXPECT_EQ(row[2], found.entry(installRoot));
        EXPECT_EQ(root, found.entry(executablesRoot));
        EXPECT_EQ(row[3], found.entry(statusFolder));
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
        bool isRelinked;
        const char *override;
        bool fromPrograms;
        bool win64Binaries;
        const char *folders; // R E J S C A O P L W
    } rows[] = {
        { "X:\\s", false, "", false, true,
          "X:\\s\\|X:\\s\\|X:\\s\\||X:\\s\\|X:\\s\\render_apps\\|X:\\s\\render_apps\\|X:\\s\\|"
          "C:\\KX_localdata\\|win64" },
        { "X:\\s_Debug|-loadstatus|..\\st", false, "X:\\nothing", false, false,
          "X:\\s_release\\|X:\\s_Debug\\|X:\\st\\|X:\\st\\|X:\\s_release\\|"
          "X:\\s_release\\render_apps\\|X:\\s_release\\render_apps\\|X:\\s_release\\|"
          "C:\\KX_localdata\\|win" },
        { "X:\\s", true, "", true, true,
          "Y:\\d\\|X:\\s\\|Y:\\d\\||X:\\s\\|X:\\s\\render_apps\\|Y:\\d\\render_apps\\|X:\\s\\|"
          "C:\\KX_localdata\\|win64" },
        { "X:\\s", true, "X:/scratch/other", true, true,
          "Y:\\d\\|X:\\s\\|Y:\\d\\||X:\\s\\|X:\\scratch\\other\\|X:\\scratch\\other\\|X:\\s\\|"
          "C:\\KX_localdata\\|win64" },
    };
    for (const auto &row : rows) {
        const Surroundings surroundings;
        makeRoot("other");
        const QString root = q(row.arguments).section(QLatin1Char('|'), 0, 0);
        fs::create_directories((root + q("\\sub\\cfg_global")).toStdWString());
        if (row.isRelinked)
            writeFile(root + q("\\sub\\cfg_global\\relink_win.cfg"), "Root=Y:\\d");
        const Found found(q("-kxRoot|") + q(row.arguments), q("tool"), row.fromPrograms,
                          row.override, row.win64Binaries);
        fs::remove_all(root.toStdWString());
        const QStringList folders = q(row.folders).split(QLatin1Char('|'));
        QStringList expected = layout.split(QLatin1Char('|'));
        for (QString &entry : expected) {
            entry.replace(q("\\W\\"), q("\\") + folders.last() + q("\\"));
            const int letter = entry.isEmpty() ? -1 : q("REJSCAOPL").indexOf(entry.at(0));
            if (letter >= 0)
                entry.replace(0, 1, folders.at(letter));
        }
        ASSERT_EQ(39, expected.size());
        for (int i = 0; i < 39; ++i)
            EXPECT_EQ(expected.at(i), found.entry(i)) << "entry " << i << ", " << row.arguments;
    }
}

TEST(InstallRoot, IsKnownByAnyOfItsFiles)
{
    const char *const valid[][2] = {
        { "r\\sub\\cfg_global\\globalconfig.ini", "r\\" },
        { "r\\bin\\win64\\kxClientconsole.exe", "r\\" },
        { "r\\bin\\win64\\kxServerconsole.exe", "r\\" },
        { "r\\bin\\win64\\kxControl.exe", "r\\" },
        { "r_release\\sub\\cfg_global\\relink_win.cfg", "r_debug\\" },
    };
    const char *const invalid[][2] = {
        { "r\\bin\\win64\\kxDeleteOldFiles.exe", "r\\" },
        { "r\\sub\\cfg_global", "r\\" }, // a file
        { "r_release\\sub\\cfg_global\\relink_win.cfg", "r_DEBUG\\" },
        { "r_release\\bin\\win64\\kxControl.exe", "r_debug\\" },
    };
    const auto isRoot = [](const char *const(&row)[2]) {
        const Surroundings surroundings;
        writeFile(q("X:\\scratch\\") + q(row[0]), "Root=Y:\\d");
        const QString root = q("X:\\scratch\\") + q(row[1]);
        // The twin of a debug build is where its relink file is read too.
        const bool hasTwin = q(row[1]) == q("r_debug\\") && isValidRoot(root);
        EXPECT_EQ(q(hasTwin ? "Y:\\d\\" : ""),
                  hasTwin ? Found(q("-kxRoot|") + root).entry(installRoot) : QString());
        return isValidRoot(root);
    };
    for (const auto &row : valid)
        EXPECT_TRUE(isRoot(row)) << row[0];
    for (const auto &row : invalid)
        EXPECT_FALSE(isRoot(row)) << row[0];
    EXPECT_FALSE(isValidRoot(QString()));
}

TEST(AppPath, GoesUpFromFoldersAndPrograms)
{
    const char *const parents[][2] = {
        { "X:\\a\\b\\", "X:\\a\\" },
        { "X:\\a", "X:\\" },
        { "X:\\", "X:\\" },
        { "X:", "X:" },
        { "abc", "abc\\" },
        { "\\\\s\\share\\", "\\\\s\\share\\" },
        { "\\\\s\\share\\d\\", "\\\\s\\share\\" },
    };
    for (const auto &row : parents) {
        auto path = fixedText<FixedNarrowString250>(row[0]);
        EXPECT_EQ(q(row[1]), parentFolderNarrow(path).toQString()) << row[0];
    }
    auto full = fixedText<FixedNarrowString250>(QByteArray(250, 'a').constData());
    EXPECT_EQ(run(250, 'a'), parentFolderNarrow(full).toQString());

    const char *const programs[][3] = {
        { "bin\\tool.exe", "X:\\suite", "X:\\suite\\bin\\tool.exe" },
        { "..\\win64\\tool.exe", "X:\\suite\\bin\\x64", "X:\\suite\\bin\\win64\\tool.exe" },
        { "a\\..\\..\\b\\x.exe", "X:\\1\\2\\3\\", "X:\\1\\b\\x.exe" },
        { "a\\x.exe", "X:\\", "a\\x.exe" },
        { "tool.exe", "X:\\suite", "tool.exe" },
        { "Y:\\x", "X:\\suite", "Y:\\x" },
        { "\\a\\x", "X:\\suite", "\\a\\x" },
        { "a\\x", "X:\\suite", "" },
    };
    for (const auto &row : programs)
        EXPECT_EQ(q(row[2]), absoluteProgramPath(fixedText<FixedNarrowString250>(row[0]),
                                                 fixedText<FixedNarrowString250>(row[1]))
                                 .toQString());
}

TEST(Environment, KnowsThe64BitProgramFolder)
{
    const Surroundings surroundings;
    EXPECT_EQ(q(""), getEnv(q("programfiles")));
    setEnv(L"ProgramFiles", q("X:\\32"));
    EXPECT_EQ(q("X:\\32"), getEnv(q("ProgramFiles")));
    setEnv(L"ProgramW6432", q("X:\\64"));
    EXPECT_EQ(q("X:\\64"), getEnv(q("PROGRAMFILES")));
}

TEST(Entities, AreDecodedInOrder)
{
    const char *const rows[][2] = {
        { "&lt;&gt;&quot;&apos;&amp;", "<>\"'&" },
        { "&#196;&#214;&#220;&#228;&#246;&#252;&#223;", "\xC4\xD6\xDC\xE4\xF6\xFC\xDF" },
        { "&amp;lt;&amp;#196;&amp;amp;", "&lt;\xC4&amp;" },
        { "&LT;&#65;& ;", "&LT;&#65;& ;" },
    };
    for (const auto &row : rows)
        EXPECT_EQ(q(row[1]), decodeEntities(q(row[0])));
}

} // namespace
