// Paths, entities and grouped numbers: what the rules promise must hold, and both kinds of path
// text must agree.
#include "text/entities.h"
#include "text/grouped_number.h"
#include "text/path.h"

#include "fuzz_support.h"

namespace {

/// Whether both kinds of text must have the same result. A fixed string is truncated. It also takes
/// a search start at or after its end for 0, which shows where a network path ends with its server.
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

} // namespace

int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    group(data.ConsumeIntegral<qint64>() >> data.ConsumeIntegralInRange(0, 63));
    while (data.remaining_bytes() > 0) {
        const QString text = takeText(data, 600);
        changePath(text);
        require(decodeEntities(text).size() <= text.size());
    }
    return 0;
}
