// Paths and the command line as text, relink lines, the numbers of reports and ages: what the rules
// promise must hold, and both kinds of text must agree.
#include "app/free_space_root.h"
#include "app/grouped_number.h"
#include "app/options.h"
#include "app/wildcard_parts.h"
#include "install/install_layout.h"
#include "install/relink_line.h"
#include "install/root_flags.h"
#include "sweep/file_time.h"
#include "text/entities.h"
#include "text/path.h"

#include "fuzz_support.h"

#include <vector>

namespace {

/// Whether both kinds of text must give one result. A fixed string is cut, and takes a search start
/// at or behind its end for 0, which shows where a network path ends with its server.
bool bothAgree(const QString &path)
{
    const bool endsWithServer = path.size() > 1 && path.at(1) == backslash
                                && path.indexOf(backslash, path.indexOf(backslash, 2) + 1) < 0;
    return path.size() < FixedWideString::capacity && !endsWithServer;
}

void changePath(const QString &path)
{
    const QString converted = toBackslashPath(path);
    auto fixed = fixedText<FixedWideString>(path);
    normalizePathFixed(fixed);
    if (path.size() > 1 && converted.contains(backslash) && bothAgree(converted))
        require(fixed.toQString() == normalizePath(converted));
    require(normalizePath(path).size() <= path.size() + 1);

    const QString parent = parentFolder(path, backslash);
    require((path + backslash).startsWith(parent));
    fixed = fixedText<FixedWideString>(path);
    if (bothAgree(path))
        require(parentFolderFixed(fixed).toQString() == parent);
    const FixedWideString source = fixed;
    require(withLongPathPrefix(fixed, source).toQString().startsWith(QLatin1String("\\\\?\\")));
    require((path + backslash).startsWith(folderOfPath(path)));
    require(path.startsWith(freeSpaceRoot(path)));
}

void splitWildcard(const QString &path)
{
    const qint32 star = path.indexOf(asterisk);
    if (star < 0)
        return;
    const WildcardParts parts = splitAtWildcard(path);
    require(parts.base == folderOfPath(path.left(star)));
    require(parts.nameStart.isEmpty() || parts.base + parts.nameStart == path.left(star));
    require(path.mid(star + 1) == parts.nameEnd + parts.rest);
    require(!parts.nameEnd.contains(backslash));
    require(parts.rest.isEmpty() || parts.rest.startsWith(backslash));
}

void scan(std::vector<std::string> arguments, const QString &relinkLine)
{
    std::vector<char *> argv;
    argv.reserve(arguments.size() + 1);
    for (std::string &argument : arguments)
        argv.push_back(argument.data());
    const auto argc = static_cast<int>(argv.size());
    argv.push_back(nullptr);
    Options options;
    readOptions(argc, argv.data(), options);
    for (const QString &root : rootFlagValues(argc, argv.data()))
        require(closedFolder(root) == root);
    InstallPaths paths;
    applyRelinkLine(paths, relinkLine);
    readStatusFlags(paths, argc, argv.data());
    layOutBelowRoots(paths, argc % 2 == 0, argc % 3 == 0, argc % 5 == 0);
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
}

/// The same with wider numbers than the platform's.
void age(qint64 time, qint64 span, qint64 now, qint32 days)
{
    require(minutesToSeconds(daysToMinutes(days)) == static_cast<qint32>(days * qint64(86400)));
    TimeStamp stamp = time;
    const auto end = static_cast<qint64>(static_cast<__int128>(time) + span);
    require(hasElapsed(stamp, span, true, &now) == (now > end));
    require(stamp == (now > end ? now : time));
    fileTimeToSeconds(stamp, static_cast<quint32>(time), static_cast<quint32>(time >> 32));
}

} // namespace

int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    group(data.ConsumeIntegral<qint64>() >> data.ConsumeIntegralInRange(0, 63));
    age(data.ConsumeIntegral<qint64>(), data.ConsumeIntegral<qint64>(),
        data.ConsumeIntegral<qint64>(), data.ConsumeIntegral<qint32>());
    static const char *const starts[] = { "",         "-do",       "-DO",        "-v",
                                          "-kxRoot",  "-kxroot=x", "14",         "&#45;",
                                          "&amp;lt;", "Root=",     "exeROOT = ", "-loadstatus" };
    std::vector<std::string> arguments(1, "kxDeleteOldFiles");
    while (data.remaining_bytes() > 0 && arguments.size() < 8) {
        const QString text = takeText(data, 600);
        changePath(text);
        splitWildcard(text);
        require(decodeEntities(text).size() <= text.size());
        arguments.push_back(data.PickValueInArray(starts)
                            + std::string(text.toLatin1().constData()));
    }
    scan(arguments, QString::fromStdString(arguments.back()));
    return 0;
}
