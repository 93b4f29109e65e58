#include "install/app_path.h"
#include "install/install_root.h"
#include "install/root_discovery.h"
#include "text/entities.h"

#include "support/files.h"
#include "support/text_printing.h"

#include <gmock/gmock.h>

namespace {

// This program runs as X:\apps\bin\win64\install_test.exe, so its own root is X:\apps.
const QString appRoot = q("X:\\apps\\");
const wchar_t *const appConfig = L"X:\\apps\\sub";

void setEnv(const wchar_t *name, const QString &value)
{
    _wputenv_s(name, value.toStdWString().c_str()); // an empty value unsets it
}

/// Nothing of the machine's own environment, and only the program's own root if that is asked for.
struct Surroundings
{
    explicit Surroundings(bool isInstalled = false)
    {
        for (const wchar_t *name :
             { L"KX_ROOT", L"KX_ROOT_INSTALLER", L"ProgramFiles", L"ProgramW6432", L"SystemDrive" })
            setEnv(name, QString());
        fs::remove_all(appConfig);
        if (isInstalled)
            fs::create_directories(std::wstring(appConfig) + L"\\cfg_global");
    }
    ~Surroundings() { fs::remove_all(appConfig); }

    ScratchFolder scratch;
};

/// Makes X:\scratch\name\ a root and returns it.
QString makeRoot(const QString &name)
{
    const QString root = q("X:\\scratch\\") + name + q("\\");
    fs::create_directories((root + q("sub\\cfg_global")).toStdWString());
    return root;
}

void writeFile(const QString &path, const QByteArray &content)
{
    fs::create_directories(fs::path(path.toStdWString()).parent_path());
    std::FILE *file = _wfopen(path.toStdWString().c_str(), L"wb");
    std::fwrite(content.constData(), 1, static_cast<std::size_t>(content.size()), file);
    std::fclose(file);
}

struct Found
{
    explicit Found(QList<QString> arguments, const QString &argv0 = q("tool"),
                   bool fromPrograms = false, const QString &override = QString(),
                   bool win64Binaries = true)
    {
        arguments.prepend(argv0);
        QList<QByteArray> bytes;
        for (const QString &argument : arguments)
            bytes.append(argument.toLatin1());
        std::vector<char *> argv;
        for (QByteArray &argument : bytes)
            argv.push_back(argument.data());
        FixedNarrowString100 renderApps;
        renderApps.assignLatin1(override);
        result = findInstallRoot(paths, static_cast<int>(argv.size()), argv.data(), log, outside,
                                 fromPrograms, fromPrograms, renderApps, win64Binaries);
    }

    QString entry(int index) const { return paths.entries[index].toQString(); }

    bool result;
    bool outside = false;
    QString log;
    InstallPaths paths;
};

QString line(const char *source, const QString &folder, bool isValid)
{
    const char *const good = qstrcmp(source, "-kxRoot flag") == 0 ? ": VALID!]" : "]";
    return q("\n[") + q(source) + q(": ") + folder + q(isValid ? good : ": invalid]");
}

TEST(RootDiscovery, TakesTheFirstValidSource)
{
    for (int sources = 0; sources < 32; ++sources) {
        SCOPED_TRACE(sources);
        const bool inFlag = sources & 1;
        const bool inInstaller = sources & 2;
        const bool inFolder = sources & 4;
        const bool inName = sources & 8;
        const bool inVariable = sources & 16;
        const Surroundings surroundings(inFolder);
        const QString flag = inFlag ? makeRoot(q("flag")) : q("X:\\scratch\\none\\");
        const QString installer = inInstaller ? makeRoot(q("installer")) : QString();
        const QString name = inName ? makeRoot(q("name")) : q("X:\\scratch\\none\\");
        const QString variable = inVariable ? makeRoot(q("variable")) : QString();
        setEnv(L"KX_ROOT_INSTALLER", installer);
        setEnv(L"KX_ROOT", variable);

        const Found found({ q("-kxRoot"), flag }, name + q("bin\\win64\\tool.exe"));
        QString log = line("-kxRoot flag", flag, inFlag);
        if (!inFlag)
            log += line("KX_ROOT_INSTALLER", installer, inInstaller);
        log += inFlag        ? line("appPath", flag, true)
               : inInstaller ? line("appPath", installer, true)
                             : line("appPath", appRoot, inFolder);
        if (!inFlag && !inInstaller && !inFolder && !inName)
            log += line("KX_ROOT", variable, inVariable);
        EXPECT_EQ(log, found.log);
        EXPECT_EQ(sources != 0, found.result);
        const QString root = inFlag        ? flag
                             : inInstaller ? installer
                             : inFolder    ? appRoot
                             : inName      ? name
                                           : variable;
        EXPECT_EQ(root, found.entry(installRoot));
        EXPECT_EQ(root, found.entry(executablesRoot));
        EXPECT_EQ(inFlag, found.outside);
    }
}

TEST(RootDiscovery, TakesFlagAndVariableAsTheyCome)
{
    const QString root = q("X:\\scratch\\r\\");
    const QString longFolder = q("X:\\scratch\\") + run(249, 'l') + q("\\");
    const struct
    {
        QList<QString> arguments;
        QString installer;
        QString log; // up to the line of the program's folder
        QString root;
    } rows[] = {
        { { q("-KXROOTFOLDER"), q("X:/scratch/r") },
          q(""),
          line("-kxRoot flag", q("X:/scratch/r\\"), true) + line("appPath", root, true),
          root },
        { { q("-kx&#82;oot"), q("X:\\scratch\\r") }, // no such entity
          q("X:/scratch/r\r"),
          line("-kxRoot flag", q(""), false) + line("KX_ROOT_INSTALLER", q("X:/scratch/r\\"), true)
              + line("appPath", root, true),
          root },
        { { q("-kxRoot"), q("X:\\scratch\\&#228;&amp;/") },
          q(""),
          line("-kxRoot flag", q("X:\\scratch\\\xE4&/"), true)
              + line("appPath", q("X:\\scratch\\\xE4&\\"), true),
          q("X:\\scratch\\\xE4&\\") },
        { { q("-kxRoot"), q("-kxRoot"), q("X:\\scratch\\r"), q("-kxRoot") },
          q(""),
          line("-kxRoot flag", q("-kxRoot\\X:\\scratch\\r\\"), true) + line("appPath", root, true),
          root },
        { { q("-kxRoot"), q("X:\\scratch\\_internal_r") },
          q(""),
          line("-kxRoot flag", q("X:\\scratch\\_internal_r\\"), true)
              + line("appPath", q("X:\\scratch\\_r\\"), true),
          q("X:\\scratch\\_r\\") },
        { { q("-kxRoot"), longFolder },
          q(""),
          line("-kxRoot flag", longFolder, true) + line("appPath", longFolder, true),
          longFolder.left(250) },
        { { q("-kxRoot"), q("") },
          q("X:\\scratch\\r\\bin\\win64"),
          line("-kxRoot flag", q("\\"), false)
              + line("KX_ROOT_INSTALLER", q("X:\\scratch\\r\\bin\\win64\\"), false)
              + line("appPath", appRoot, false) + line("KX_ROOT", q(""), false),
          q("") },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.log.toStdString());
        const Surroundings surroundings;
        for (const char *name : { "r", "\xE4&", "_internal_r", "_r" })
            makeRoot(q(name));
        makeRoot(run(249, 'l'));
        setEnv(L"KX_ROOT_INSTALLER", row.installer);
        const Found found(row.arguments);
        EXPECT_EQ(row.log, found.log);
        EXPECT_EQ(row.root, found.entry(installRoot));
        EXPECT_EQ(!row.root.isEmpty(), found.result);
        for (const char *below : { "sub\\cfg_global", "sub", "" }) // too long for remove_all
            RemoveDirectoryW((longFolder + q(below)).toStdWString().c_str());
    }
}

TEST(RootDiscovery, FollowsTheRelinkFile)
{
    const QString root = q("X:\\scratch\\r\\");
    const QString invalid = q("\n[Relink Y:\\data\\: invalid]");
    const struct
    {
        QByteArray content;
        QString log;
        QString root;
        QString programs;
    } rows[] = {
        { "  root = Y:\\data  \r\nExeRoot=Y:\\bin", invalid, q("Y:\\data\\"), root },
        { "RootFolder=Y:\\data\\", invalid, q("Y:\\data\\"), root },
        { "Root=X:/scratch/new/\n", q("\n[Relink X:/scratch/new/\\]"), q("X:/scratch/new/\\"),
          root },
        { "ExeRoot=Y:\\bin=\nRoot=Y:\\data", q(""), q(""), q("Y:\\bin=") },
        { "Data=Y:\\data", q(""), q(""), root },
        { "Root Y:\\data", q(""), q(""), root },
        { "Root=", q(""), q(""), root },
        { "", q(""), q(""), root },
        { "\r\nRoot=Y:\\data", q(""), q(""), root },
        { "Root=" + QByteArray(260, 'd'), q("\n[Relink ") + run(250, 'd') + q(": invalid]"),
          run(250, 'd'), root },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.content.toStdString());
        const Surroundings surroundings;
        makeRoot(q("new"));
        makeRoot(q("r"));
        writeFile(root + q("sub\\cfg_global\\relink_win.cfg"), row.content);
        const Found found({ q("-kxRoot"), root });
        EXPECT_TRUE(found.result);
        EXPECT_EQ(line("-kxRoot flag", root, true) + line("appPath", root, true) + row.log,
                  found.log);
        EXPECT_EQ(row.root, found.entry(installRoot));
        EXPECT_EQ(row.programs, found.entry(executablesRoot));
    }
    const Surroundings surroundings;
    makeRoot(q("r"));
    const QString relink = root + q("sub\\cfg_global\\relink_win.cfg");
    writeFile(relink, "Root=Y:\\data");
    const HANDLE held = CreateFileW(relink.toStdWString().c_str(), GENERIC_READ, 0, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    const Found found({ q("-kxRoot"), root });
    CloseHandle(held);
    EXPECT_FALSE(found.result);
    EXPECT_EQ(line("-kxRoot flag", root, true) + line("appPath", root, true), found.log);
    EXPECT_EQ(q(""), found.entry(installRoot));
    EXPECT_EQ(root, found.entry(executablesRoot));
    EXPECT_EQ(q(""), found.entry(subFolder));
}

TEST(RootDiscovery, LeavesAVersionFolderAndReadsTheStatusFolder)
{
    const struct
    {
        QString root;
        QList<QString> status;
        QString expectedRoot;
        QString expectedStatus;
    } rows[] = {
        { q("r\\a_kx9"), { q("..\\status") }, q("X:\\scratch\\r\\"), q("X:\\scratch\\status\\") },
        { q("n\\_KX9"), { q("D:\\st\"") }, q("X:\\scratch\\n\\_KX9\\"), q("D:\\st\\") },
        { q("r"), { q("st&#228;\\") }, q("X:\\scratch\\r\\"), q("st\xE4\\") },
        { q("r"), { q("") }, q("X:\\scratch\\r\\"), q("\\") },
        { q("r"), { q("a"), q("-LoadStatusX"), q("b/") }, q("X:\\scratch\\r\\"), q("b/\\") },
        { q("r"), { run(300, 's') }, q("X:\\scratch\\r\\"), run(250, 's') },
        { q("r"),
          { q("..\\") + run(300, 's') },
          q("X:\\scratch\\r\\"),
          q("X:\\scratch\\") + run(234, 's') }, // "X:\scratch\r\..\" takes 16 units of 250
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.expectedStatus.toStdString());
        const Surroundings surroundings;
        makeRoot(q("r"));
        makeRoot(row.root);
        const QString root = q("X:\\scratch\\") + row.root + q("\\");
        const Found found(QList<QString>{ q("-kxRoot"), root, q("-loadstatus") } + row.status);
        EXPECT_EQ(row.expectedRoot, found.entry(installRoot));
        EXPECT_EQ(root, found.entry(executablesRoot));
        EXPECT_EQ(row.expectedStatus, found.entry(statusFolder));
    }
}

// R is the installation root, E that of the executables, J the parent of the job data, S the
// status folder, C and A the roots of configuration and render applications (A: those that may
// move), O those of the others.
const char *const layout[39] = { "R",
                                 "Ebin\\win\\",
                                 "Rsub\\",
                                 "Rsub\\cfg_global\\",
                                 "Rsub\\cfg_user\\",
                                 "JkxJobdata\\",
                                 "Rautoload\\",
                                 "Lrenderscripts\\",
                                 "Rsub\\cfg_website_templates\\",
                                 "A_config\\",
                                 "A_prepost_scripts\\",
                                 "O_setenv\\win\\",
                                 "O_install_paths\\",
                                 "O_submitplugins\\",
                                 "Esub\\log\\",
                                 "Rsub\\history_db\\",
                                 "Eplugins64\\server_jobs\\",
                                 "Eplugins64\\server_notify\\",
                                 "Ebin\\B\\",
                                 "Eplugins64\\image\\",
                                 "Eplugins64\\submitter_sceneparser\\",
                                 "L",
                                 "Ltextures\\",
                                 "Lrenderer_exe\\",
                                 "Ltemp\\",
                                 "Lrenderout\\",
                                 "Lcachedscenes\\",
                                 "Lrenderer_prefs\\",
                                 "",
                                 "E",
                                 "S",
                                 "Rsub\\stats\\",
                                 "Pplugins\\",
                                 "X:\\apps\\bin\\win64\\",
                                 "Csub\\cfg_global\\",
                                 "O_setenv\\all\\",
                                 "Ascripts\\",
                                 "Esub_user\\log\\",
                                 "L_kxServer\\" };

TEST(InstallLayout, DerivesAllFolders)
{
    const QString suite = q("X:\\scratch\\suite\\");
    const QString apps = q("render_apps\\");
    const QString data = q("Y:\\data\\");
    const QString debug = q("X:\\scratch\\s_Debug\\");
    const QString release = q("X:\\scratch\\s_release\\");
    const QString other = q("X:\\scratch\\other\\");
    const struct
    {
        QString root;
        QByteArray relink;
        QList<QString> status;
        bool fromPrograms;
        QString override;
        bool win64;
        QString folders[9]; // R E J S C A O P, and the folder of the 64-bit programs
    } rows[] = {
        { suite,
          "",
          {},
          false,
          q(""),
          true,
          { suite, suite, suite, q(""), suite, suite + apps, suite + apps, suite, q("win64") } },
        { debug,
          "",
          { q("..\\st") },
          false,
          q(""),
          false,
          { release, debug, q("X:\\scratch\\st\\"), q("X:\\scratch\\st\\"), release, release + apps,
            release + apps, release, q("win") } },
        { suite,
          "Root=Y:\\data",
          {},
          true,
          q(""),
          true,
          { data, suite, data, q(""), suite, suite + apps, data + apps, suite, q("win64") } },
        { suite,
          "Root=Y:\\data",
          {},
          true,
          q("X:/scratch/other"),
          true,
          { data, suite, data, q(""), suite, other, other, suite, q("win64") } },
        { suite,
          "",
          {},
          false,
          q("X:\\nothing"),
          true,
          { suite, suite, suite, q(""), suite, suite + apps, suite + apps, suite, q("win64") } },
    };
    for (const auto &row : rows) {
        const Surroundings surroundings;
        for (const char *name : { "suite", "s_Debug", "other" })
            makeRoot(q(name));
        if (!row.relink.isEmpty())
            writeFile(row.root + q("sub\\cfg_global\\relink_win.cfg"), row.relink);
        QList<QString> arguments = { q("-kxRoot"), row.root };
        if (!row.status.isEmpty())
            arguments += QList<QString>{ q("-loadstatus") } + row.status;
        const Found found(arguments, q("tool"), row.fromPrograms, row.override, row.win64);
        for (int i = 0; i < 39; ++i) {
            QString expected = q(layout[i]).replace(q("\\B\\"), q("\\") + row.folders[8] + q("\\"));
            const int base = expected.isEmpty() ? -1 : q("REJSCAOP").indexOf(expected.at(0));
            if (base >= 0)
                expected.replace(0, 1, row.folders[base]);
            else if (expected.startsWith(QLatin1Char('L')))
                expected.replace(0, 1, q("C:\\KX_localdata\\"));
            EXPECT_EQ(expected, found.entry(i))
                << "entry " << i << " of " << row.root.toStdString();
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
        { "r\\sub\\cfg_global\\globalconfig.ini", "r\\", true },
        { "r\\bin\\win64\\kxClientconsole.exe", "r\\", true },
        { "r\\bin\\win64\\kxServerconsole.exe", "r\\", true },
        { "r\\bin\\win64\\kxControl.exe", "r\\", true },
        { "r\\bin\\win64\\kxDeleteOldFiles.exe", "r\\", false },
        { "r\\sub\\cfg_global", "r\\", false }, // a file
        { "r_release\\sub\\cfg_global\\relink_win.cfg", "r_debug\\", true },
        { "r_release\\sub\\cfg_global\\relink_win.cfg", "r_DEBUG\\", false },
        { "r_release\\bin\\win64\\kxControl.exe", "r_debug\\", false },
    };
    for (const auto &row : rows) {
        const ScratchFolder scratch;
        writeFile(q("X:\\scratch\\") + q(row.file), "Root=Y:\\data");
        const QString root = q("X:\\scratch\\") + q(row.root);
        EXPECT_EQ(row.isValid, isValidRoot(root)) << row.file;
        if (q(row.root) != q("r_debug\\") || !row.isValid)
            continue;
        const Surroundings surroundings;
        writeFile(q("X:\\scratch\\") + q(row.file), "Root=Y:\\data");
        EXPECT_EQ(q("Y:\\data\\"), Found({ q("-kxRoot"), root }).entry(installRoot));
    }
}

TEST(AppPath, GoesUpFromFoldersAndPrograms)
{
    const struct
    {
        const char *path;
        const char *above;
    } rows[] = {
        { "X:\\a\\b\\", "X:\\a\\" },
        { "X:\\a", "X:\\" },
        { "X:\\", "X:\\" },
        { "X:", "X:" },
        { "abc", "abc\\" },
        { "\\\\srv\\share\\", "\\\\srv\\share\\" },
        { "\\\\srv\\share\\d\\", "\\\\srv\\share\\" },
    };
    for (const auto &row : rows) {
        auto path = fixedText<FixedNarrowString250>(row.path);
        EXPECT_EQ(q(row.above), parentFolderNarrow(path).toQString()) << row.path;
    }
    auto full = fixedText<FixedNarrowString250>(QByteArray(250, 'a').constData());
    EXPECT_EQ(run(250, 'a'), parentFolderNarrow(full).toQString());

    const struct
    {
        const char *path;
        const char *folder;
        const char *absolute;
    } programs[] = {
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
        EXPECT_EQ(q(row.absolute), absoluteProgramPath(fixedText<FixedNarrowString250>(row.path),
                                                       fixedText<FixedNarrowString250>(row.folder))
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
        { "&amp;lt;", "&lt;" },
        { "&amp;#196;", "\xC4" },
        { "&amp;amp;", "&amp;" },
        { "&LT;&#65;& ;", "&LT;&#65;& ;" },
    };
    for (const auto &row : rows)
        EXPECT_EQ(q(row[1]), decodeEntities(q(row[0])));
}

} // namespace
