#include "install/app_path.h"
#include "install/root_discovery.h"
#include "install/root_validation.h"

#include "support/files.h"
#include "support/text_printing.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

namespace {

void setEnv(const wchar_t *name, const QString &value)
{
    _wputenv_s(name, value.toStdWString().c_str()); // an empty value unsets it
}

void writeFile(const QString &path, const QString &content = QString())
{
    makeFile(path.toStdWString());
    std::FILE *file = _wfopen(path.toStdWString().c_str(), L"wb");
    std::fputs(content.toLatin1().constData(), file);
    std::fclose(file);
}

/// Makes a folder a root and returns it with its closing backslash.
QString makeRoot(const QString &path)
{
    fs::create_directories((path + q("\\sub\\cfg_global")).toStdWString());
    return path + q("\\");
}

/// Nothing of the machine's own environment. This program runs as
/// X:\apps\bin\win64\install_test.exe, so X:\apps is its own root when that is asked for.
void startAfresh(bool isInstalled = false)
{
    clearVariables();
    fs::remove_all(L"X:\\apps\\sub");
    if (isInstalled)
        makeRoot(q("X:\\apps"));
}

/// What is found with these arguments, the program's name first; a "|" separates them. The options
/// are of what buildInstallLayout is told: "g"lobal configuration, "r"ender applications, "w"in64.
struct Found
{
    explicit Found(const QString &arguments, const QString &options = q("w"),
                   const QString &override = QString())
    {
        QList<QByteArray> bytes = arguments.toLatin1().split('|');
        std::vector<char *> argv;
        for (QByteArray &argument : bytes)
            argv.push_back(argument.data());
        const int argc = arguments.isEmpty() ? 0 : bytes.size();
        FixedNarrowString100 renderApps;
        renderApps.assignLatin1(override);
        result = findInstallRoot(paths, argc, argv.data(), log, outside, options.contains(q("g")),
                                 options.contains(q("r")), renderApps, options.contains(q("w")));
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
    for (int first = 0; first <= sourceCount; ++first) { // it and all behind it are roots
        SCOPED_TRACE(first);
        const ScratchFolder scratch;
        startAfresh(first <= folder);
        QString roots[sourceCount + 1];
        for (int source = 0; source < sourceCount; ++source)
            roots[source] =
                source < first ? q("X:\\no\\") : makeRoot(q("X:\\scratch\\%1").arg(source));
        roots[folder] = q("X:\\apps\\");
        setEnv(L"KX_ROOT_INSTALLER", roots[installer]);
        setEnv(L"KX_ROOT", roots[variable]);
        QString log;
        for (int source = 0; source <= qMin<int>(first, variable); ++source)
            if (source != name)
                log += q(heads[source]) + roots[source]
                       + q(source < first  ? ": invalid]"
                           : first == flag ? ": VALID!]"
                                           : "]");
        if (first < folder) // tested and noted once more
            log += q(heads[folder]) + roots[first] + q("]");
        const Found found(roots[name] + q("bin\\win64\\tool.exe|-kxRoot|") + roots[flag]);
        EXPECT_EQ(log, found.log);
        EXPECT_EQ(first < sourceCount, found.result);
        EXPECT_EQ(roots[first], found.entry(installRoot));
        EXPECT_EQ(first == flag, found.outside);
    }
    const ScratchFolder scratch;
    startAfresh(true);
    const QString root = makeRoot(q("X:\\scratch\\r"));
    for (const QString &program : { root + q("tool"), q("tool") }) {
        const Found inside(program + q("|-kxRoot|") + root);
        EXPECT_EQ(root, inside.entry(installRoot));
        EXPECT_FALSE(inside.outside);
    }
    const Found found = Found(QString()); // no argument, not even the name
    EXPECT_EQ(q("X:\\apps\\"), found.entry(installRoot));
    EXPECT_EQ(q(""), found.entry(programFolder));
}

TEST(RootDiscovery, TakesWhatItIsToldAsItComes)
{
    const ScratchFolder scratch;
    startAfresh();
    for (const char *root : { "r", "r\\a_kx9", "n\\_KX9", "\xE4&", "_internal_r", "_r" })
        makeRoot(q("X:\\scratch\\") + q(root));
    fs::current_path(L"X:\\");
    setEnv(L"KX_ROOT_INSTALLER", q("X:/scra\rtch/r\r")); // for what needs it
    // Arguments, the flag's values in the log and what became of them, root, status folder.
    QList<QStringList> rows = rowsOf(4, R"(
            -KXROOTx|X:/scratch/r X:/scratch/r\:~VALID! X:\scratch\r\ ''
            -kxRoot|scratch\r scratch\r\:~VALID! scratch\r\ ''
            -kxRoot :~invalid X:\scratch\r\ ''        -kxRoot| \:~invalid X:\scratch\r\ ''
            -kxRoot|-kxRoot|X:/scratch/r -kxRoot\X:/scratch/r\:~VALID! X:\scratch\r\ ''
            -kxRoot|X:\scratch\_internal_r X:\scratch\_internal_r\:~VALID! X:\scratch\_r\ ''
            -kxRoot|X:/scratch/_internal_r X:/scratch/_internal_r\:~VALID! X:\scratch\_internal_r\ ''
            x|-loadstatus|a|-LoadStatusX|&lt;/ :~invalid X:\scratch\r\ </\
            x|-loadstatus|D:\s" :~invalid X:\scratch\r\ D:\s\   x|-loadstatus| :~invalid X:\scratch\r\ \
            -kxRoot|X:\scratch\r\a_kx9|-loadstatus|../s X:\scratch\r\a_kx9\:~VALID! X:\scratch\r\ X:\scratch\s\
            -kxRoot|X:\scratch\n\_KX9 X:\scratch\n\_KX9\:~VALID! X:\scratch\n\_KX9\ '')");
    rows << QStringList{ q("-kxRoot|X:\\scratch\\&#228;&amp;/"), q("X:\\scratch\\\xE4&/: VALID!"),
                         q("X:\\scratch\\\xE4&\\"), QString() };
    // "X:\scratch\r\..\" takes 16 of the 250 units.
    rows << QStringList{ q("x|-loadstatus|..\\") + repeated(300), q(": invalid"),
                         q("X:\\scratch\\r\\"), q("X:\\scratch\\") + repeated(234) };
    for (const QStringList &row : rows) {
        SCOPED_TRACE(row[0].toStdString());
        const Found found(q("tool|") + row[0]);
        EXPECT_EQ(q("\n[-kxRoot flag: ") + row[1],
                  found.log.left(found.log.indexOf(QLatin1Char(']'))));
        EXPECT_EQ(row[2], found.entry(installRoot));
        EXPECT_EQ(row[3], found.entry(statusFolder));
    }
}

TEST(RootDiscovery, FollowsTheRelinkFile)
{
    const ScratchFolder scratch;
    startAfresh();
    for (const char *root : { "r", "r\\a_KX9", "a" })
        makeRoot(q("X:\\scratch\\") + q(root));
    const QString root = q("X:\\scratch\\r\\");
    const QString relink = root + q("sub\\cfg_global\\relink_win.cfg");
    const QString log = q("\n[-kxRoot flag: ") + root + q(": VALID!]\n[appPath: ") + root + q("]");
    // Content, what it adds to the log, root, root of the executables.
    QList<QStringList> rows = rowsOf(4, R"(
            ~~root~=~Y:\d~~^ExeRoot=Y:\b ^[Relink~Y:\d\:~invalid] Y:\d\ X:\scratch\r\
            Root=X:/scratch/a/^ ^[Relink~X:/scratch/a/\] X:/scratch/a/\ X:\scratch\r\
            RootFolder=X:\scratch\r\a_KX9 ^[Relink~X:\scratch\r\a_KX9\] X:\scratch\r\a_KX9\ X:\scratch\r\
            exeroot~=~Y:\b=^Root=Y:\d '' '' Y:\b=   Data=Y:\d '' '' X:\scratch\r\
            Root~Y:\d '' '' X:\scratch\r\           Root= '' '' X:\scratch\r\
            ^Root=Y:\d '' '' X:\scratch\r\ )");
    // Byte 0x85 is not white space.
    rows << QStringList{ q("Root=Y:\\d\x85"), q("\n[Relink Y:\\d\x85\\: invalid]"),
                         q("Y:\\d\x85\\"), root };
    rows << QStringList{ q("\x85Root=Y:\\d"), QString(), QString(), root };
    rows << QStringList{ q("Root=") + repeated(251),
                         q("\n[Relink ") + repeated(250) + q(": invalid]"), repeated(250), root };
    for (const QStringList &row : rows) {
        SCOPED_TRACE(row[0].toStdString());
        writeFile(relink, row[0]);
        const Found found(q("tool|-kxRoot|") + root);
        EXPECT_TRUE(found.result);
        EXPECT_EQ(log + row[1], found.log);
        EXPECT_EQ(row[2], found.entry(installRoot));
        EXPECT_EQ(row[3], found.entry(executablesRoot));
    }
    const HANDLE held = holdOpen(relink.toStdWString());
    const Found unreadable(q("tool|-kxRoot|") + root);
    CloseHandle(held);
    EXPECT_FALSE(unreadable.result);
    EXPECT_EQ(log, unreadable.log);
    EXPECT_EQ(q(""), unreadable.entry(installRoot) + unreadable.entry(binFolder));
}

TEST(InstallLayout, DerivesAllFolders)
{
    // R, E: the two roots. J: above the job data. S: the status folder. C: the root that the
    // second global configuration is below. A, O: above the settings of the render applications
    // that may move, and of the others. P: the root of the plugins. L: local data. D: the program's
    // folder. W: win or win64.
    const QStringList layout =
        q("R|Ebin\\win\\|Rsub\\|Rsub\\cfg_global\\|Rsub\\cfg_user\\|JkxJobdata\\|Rautoload\\|"
          "Lrenderscripts\\|Rsub\\cfg_website_templates\\|A_config\\|A_prepost_scripts\\|"
          "O_setenv\\win\\|O_install_paths\\|O_submitplugins\\|Esub\\log\\|Rsub\\history_db\\|"
          "Eplugins64\\server_jobs\\|Eplugins64\\server_notify\\|Ebin\\W\\|Eplugins64\\image\\|"
          "Eplugins64\\submitter_sceneparser\\|L|Ltextures\\|Lrenderer_exe\\|Ltemp\\|Lrenderout\\|"
          "Lcachedscenes\\|Lrenderer_prefs\\||E|S|Rsub\\stats\\|Pplugins\\|D|"
          "Csub\\cfg_global\\|O_setenv\\all\\|Ascripts\\|Esub_user\\log\\|L_kxServer\\")
            .split(QLatin1Char('|'));
    // Arguments behind -kxRoot, relink line, override, options, and R, E, J, S, C, A, O, P.
    for (const QStringList &row : rowsOf(12, R"(
            X:\s '' '' w -> X:\s\ X:\s\ X:\s\ '' X:\s\ X:\s\render_apps\ X:\s\render_apps\ X:\s\
            X:\s_Debug|-loadstatus|..\st '' X:\no '' -> X:\s_release\ X:\s_Debug\ X:\st\ X:\st\
                X:\s_release\ X:\s_release\render_apps\ X:\s_release\render_apps\ X:\s_release\
            X:\s Root=Y:\d '' grw
                -> Y:\d\ X:\s\ Y:\d\ '' X:\s\ X:\s\render_apps\ Y:\d\render_apps\ X:\s\
            X:\s ExeRoot=Y:\d\ X:/apps rw -> '' Y:\d\ '' '' '' X:\apps\ X:\apps\ Y:\d\ )")) {
        startAfresh();
        const QString root = makeRoot(row[0].section(QLatin1Char('|'), 0, 0));
        if (!row[1].isEmpty())
            writeFile(root + q("sub\\cfg_global\\relink_win.cfg"), row[1]);
        const Found found(q("tool|-kxRoot|") + row[0], row[3], row[2]);
        fs::remove_all(root.toStdWString());
        const QStringList folders = row.mid(4)
                                    << q("C:\\KX_localdata\\") << q("X:\\apps\\bin\\win64\\");
        for (int i = 0; i < 39; ++i) {
            QString expected = layout.at(i);
            if (!expected.isEmpty())
                expected.replace(0, 1, folders.at(q("REJSCAOPLD").indexOf(expected.at(0))));
            expected.replace(q("\\W\\"), q(row[3].isEmpty() ? "\\win\\" : "\\win64\\"));
            EXPECT_EQ(expected, found.entry(i)) << "entry " << i << ", " << row[0];
        }
    }
}

TEST(InstallRoot, IsKnownByAnyOfItsFiles)
{
    // File that is there, root, whether it is one.
    for (const QStringList &row : rowsOf(3, R"(
            r\bin\win64\kxClientconsole.exe r\ true    r\bin\win64\kxServerconsole.exe r\ true
            r\bin\win64\kxControl.exe r\ true          r\bin\win64\kxDeleteOldFiles.exe r\ false
            r_release_release\sub\cfg_global\relink_win.cfg r_debug_debug\ true
            r_release\sub\cfg_global\relink_win.cfg r_DEBUG\ false
            r_release\bin\win64\kxControl.exe r_debug\ false   r\sub\cfg_global r\ false)")) {
        const ScratchFolder scratch;
        writeFile(q("X:\\scratch\\") + row[0]);
        EXPECT_EQ(row[2], q(isValidRoot(q("X:\\scratch\\") + row[1]) ? "true" : "false")) << row[0];
    }
    EXPECT_FALSE(isValidRoot(QString()));
    // The twin of a debug build is where its relink file is read too.
    const ScratchFolder scratch;
    startAfresh();
    writeFile(q("X:\\scratch\\r_release\\sub\\cfg_global\\relink_win.cfg"), q("Root=Y:\\d"));
    EXPECT_EQ(q("Y:\\d\\"), Found(q("tool|-kxRoot|X:\\scratch\\r_debug")).entry(installRoot));
}

TEST(AppPath, GoesUpFromFoldersAndPrograms)
{
    const auto narrow = [](const QString &text) {
        return fixedText<FixedNarrowString250>(text.toLatin1().constData());
    };
    for (const QStringList &row : rowsOf(2, R"(
            X:\a\b\ -> X:\a\   X:\a -> X:\   X:\ -> X:\   X: -> X:   abc -> abc\
            \\s\share\ -> \\s\share\   \\s\share\d\ -> \\s\share\ )")) {
        FixedNarrowString250 path = narrow(row[0]);
        EXPECT_EQ(row[1], parentFolderNarrow(path).toQString()) << row[0];
    }
    // Path, current folder, result.
    for (const QStringList &row : rowsOf(3, R"(
            bin\tool.exe X:\suite -> X:\suite\bin\tool.exe     a\x.exe X:\ -> a\x.exe
            ..\win64\tool.exe X:\suite\bin\x64 -> X:\suite\bin\win64\tool.exe
            a\..\..\b\x.exe X:\1\2\3\ -> X:\1\b\x.exe          a\x.exe X:\b -> X:\b\a\x.exe
            tool.exe X:\suite -> tool.exe   Y:\x X:\suite -> Y:\x   \a\x X:\suite -> \a\x
            a\x X:\suite -> '')"))
        EXPECT_EQ(row[2], absoluteProgramPath(narrow(row[0]), narrow(row[1])).toQString())
            << row[0];
    startAfresh();
    EXPECT_EQ(q(""), getEnv(q("programfiles")));
    setEnv(L"ProgramFiles", q("X:\\32"));
    EXPECT_EQ(q("X:\\32"), getEnv(q("ProgramFiles")));
    setEnv(L"ProgramW6432", q("X:\\64"));
    EXPECT_EQ(q("X:\\64"), getEnv(q("PROGRAMFILES")));
}

} // namespace
