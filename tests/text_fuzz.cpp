// Runs paths, entities, white space and changes of fixed strings on any bytes, for the sanitizers.
#include "text/entities.h"
#include "text/path.h"
#include "text/white_space.h"

extern "C" int LLVMFuzzerTestOneInput(const char *bytes, std::size_t size);

int LLVMFuzzerTestOneInput(const char *bytes, std::size_t size)
{
    const QString input = QString::fromLatin1(bytes, static_cast<int>(size));
    const auto part = [&input](int index) { // of three, with a "|" between them
        return fixedText<FixedWideString>(input.section(QLatin1Char('|'), index, index));
    };
    FixedWideString text = part(0);
    text.replaceAllNoCase(part(1), part(2));
    text.removeRange(part(1).length, -part(2).length);
    text.insertAt(part(2).length, part(1));
    normalizePathFixed(text);
    parentFolderFixed(text);
    withLongPathPrefix(text, FixedWideString(text));
    folderOfPath(normalizePath(decodeEntities(trimmedText(input))));
    return 0;
}
