// What comes in with the command line and the relink file, and the numbers of ages and reports.
#include "app/grouped_number.h"
#include "app/options.h"
#include "install/install_layout.h"
#include "install/relink_line.h"
#include "install/root_flags.h"
#include "sweep/file_time.h"
#include "text/entities.h"

#include "fuzz_support.h"

#include <vector>

namespace {

void scan(std::vector<std::string> arguments, const QString &line)
{
    std::vector<char *> argv;
    for (std::string &argument : arguments)
        argv.push_back(argument.data());
    const auto argc = static_cast<int>(argv.size());
    argv.push_back(nullptr);

    Options options;
    const char *badNumber = readOptions(argc, argv.data(), options);
    require(badNumber == nullptr
            || std::find(argv.begin(), argv.end(), badNumber) < argv.end() - 1);
    const QStringList roots = rootFlagValues(argc, argv.data());
    require(roots.size() <= qMax(0, argc - 2));
    for (const QString &root : roots)
        require(root.endsWith(QLatin1Char('\\')) || root.endsWith(QLatin1Char('/')));

    InstallPaths paths;
    applyRelinkLine(paths, line);
    const FixedWideString250 &root = paths.entries[installRoot];
    require(root.isEmpty() || line.startsWith(QLatin1String("root"), Qt::CaseInsensitive));
    require(root.isEmpty() || root.endsWithBackslash() || root.length == 250);
    readStatusFlags(paths, argc, argv.data());
    layOutBelowRoots(paths, argc % 2 == 0, argc % 3 == 0, argc % 5 == 0);
    buildLocalDataLayout(paths);
    for (const FixedWideString250 &folder : paths.entries)
        require(folder.length <= FixedWideString250::capacity && folder.value[folder.length] == 0);
}

void group(qint64 number)
{
    const QString text = formatGroupedNumber(number);
    require(QString(text).remove(QLatin1Char(' ')) == QString::number(number));
    // 1000 of a unit stay together, 1001 do not; three times at the most.
    const __int128 size = number < 0 ? -static_cast<__int128>(number) : number;
    qint32 groups = 0;
    for (const qint64 most : { 1000, 1000999, 1000999999 })
        groups += size > most ? 1 : 0;
    require(text.count(QLatin1Char(' ')) == groups);
    for (; groups > 0; --groups)
        require(text.at(text.size() - 4 * groups) == QLatin1Char(' '));
}

/// The same with wider numbers than the platform's.
void age(qint64 time, qint32 days, qint64 now, quint64 ticks)
{
    const auto seconds = static_cast<qint32>(static_cast<qint64>(days) * 86400);
    require(minutesToSeconds(daysToMinutes(days)) == seconds);
    TimeStamp stamp = time;
    const auto end = static_cast<qint64>(static_cast<__int128>(time) + seconds);
    require(hasElapsed(stamp, seconds, true, &now) == (now > end));
    require(stamp == (now > end ? now : time));
    fileTimeToSeconds(stamp, static_cast<quint32>(ticks), static_cast<quint32>(ticks >> 32));
}

} // namespace

int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    group(data.ConsumeIntegral<qint64>() >> data.ConsumeIntegralInRange(0, 63));
    age(data.ConsumeIntegral<qint64>(), data.ConsumeIntegral<qint32>(),
        data.ConsumeIntegral<qint64>(), data.ConsumeIntegral<quint64>());
    static const char *const starts[] = { "",           "-do",  "-DO",        "-v",       "-kxRoot",
                                          "-kxroot=x",  "14",   "&#45;",      "&amp;lt;", "Root=",
                                          "exeROOT = ", "..\\", "-loadstatus" };
    std::vector<std::string> arguments(1, "kxDeleteOldFiles");
    while (data.remaining_bytes() > 0 && arguments.size() < 8)
        arguments.push_back(data.PickValueInArray(starts)
                            + std::string(takeText(data, 300).toLatin1().constData()));
    const QString line = QString::fromStdString(arguments.back());
    require(decodeEntities(line).size() <= line.size());
    scan(arguments, line);
    return 0;
}
