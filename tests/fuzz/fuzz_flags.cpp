// The command line as the options and the root discovery read it, and the line of a relink file.
#include "app/options.h"
#include "install/install_layout.h"
#include "install/relink_line.h"
#include "install/root_flags.h"

#include "fuzz_support.h"

#include <vector>

namespace {

/// What every folder of a layout must be, wherever it came from.
void requireSound(const InstallPaths &paths)
{
    for (const FixedWideString250 &folder : paths.entries)
        require(folder.length <= FixedWideString250::capacity && folder.value[folder.length] == 0);
}

void scan(std::vector<std::string> &arguments)
{
    std::vector<char *> argv;
    argv.reserve(arguments.size() + 1);
    for (std::string &argument : arguments)
        argv.push_back(argument.data());
    const auto argc = static_cast<int>(argv.size());
    argv.push_back(nullptr);

    Options options;
    const char *badNumber = readOptions(argc, argv.data(), options);
    qint32 daysOld = 14;
    bool verbose = false;
    QString directory;
    int next = 1;
    for (bool isNumber = true; next < argc && isNumber; ++next) {
        const QString text = QString::fromLatin1(argv[static_cast<std::size_t>(next)]);
        if (text.toLower() == QLatin1String("-do") && next + 1 < argc)
            daysOld = QString::fromLatin1(argv[static_cast<std::size_t>(++next)]).toInt(&isNumber);
        else if (text.toLower() == QLatin1String("-v"))
            verbose = true;
        else
            directory = text;
        require(isNumber || badNumber == argv[static_cast<std::size_t>(next)]);
    }
    require(options.verbose == verbose && options.directory == directory);
    require(badNumber != nullptr || options.daysOld == daysOld);
    bool isArgument = badNumber == nullptr;
    for (int i = 1; i < argc; ++i)
        isArgument |= argv[static_cast<std::size_t>(i)] == badNumber;
    require(isArgument);

    const QStringList roots = rootFlagValues(argc, argv.data());
    require(roots.size() <= qMax(0, argc - 2));
    for (const QString &root : roots)
        require(root.endsWith(QLatin1Char('\\')) || root.endsWith(QLatin1Char('/')));

    if (argc > 4) // slow, and nothing comes of more arguments
        return;
    InstallPaths paths;
    if (!roots.isEmpty())
        paths.entries[installRoot].assignQString(roots.last());
    readStatusFlags(paths, argc, argv.data());
    layOutBelowRoots(paths, argc % 2 == 0, argc % 3 == 0, argc % 5 == 0);
    buildLocalDataLayout(paths);
    requireSound(paths);
    require(paths.entries[unusedFolder].isEmpty());
}

void relink(const QString &line)
{
    InstallPaths paths;
    applyRelinkLine(paths, line);
    requireSound(paths);
    const FixedWideString250 &root = paths.entries[installRoot];
    const FixedWideString250 &programs = paths.entries[executablesRoot];
    require(root.isEmpty() || line.startsWith(QLatin1String("root"), Qt::CaseInsensitive));
    require(root.isEmpty() || root.endsWithBackslash() || root.length == 250);
    require(programs.isEmpty() || line.startsWith(QLatin1String("exeroot"), Qt::CaseInsensitive));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size);
int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    static const char *const starts[] = { "",        "-do",       "-v",          "-DO",
                                          "-kxRoot", "-kxroot=x", "-loadstatus", "&#45;",
                                          "..\\",    "Root=",     "ExeRoot = " };
    relink(QLatin1String(data.PickValueInArray(starts)) + takeText(data, 300));
    std::vector<std::string> arguments(1, "kxDeleteOldFiles");
    while (data.remaining_bytes() > 0 && arguments.size() < 12) {
        std::string argument = data.PickValueInArray(starts);
        if (data.ConsumeBool())
            argument += takeText(data, 300).toLatin1().constData();
        arguments.push_back(argument);
    }
    scan(arguments);
    return 0;
}
