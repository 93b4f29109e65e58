#include "app/options.h"

#include "text/white_space.h"

namespace {

bool isOption(const QString &argument, const char *option)
{
    return argument.compare(QLatin1String(option), Qt::CaseInsensitive) == 0;
}

} // namespace

const char *readOptions(int argc, char **argv, Options &options)
{
    for (int i = 1; i < argc; ++i) {
        const QString argument = QString::fromLatin1(argv[i]);
        // Frozen: a final -do without a value is taken for the directory.
        if (isOption(argument, "-do") && i + 1 < argc) {
            ++i;
            bool isNumber = false;
            const QString value = QString::fromLatin1(argv[i]);
            options.daysOld = value.toInt(&isNumber, 10);
            // QtCore 5 takes U+0085 for white space.
            if (!isNumber || value.contains(nextLineCharacter))
                return argv[i];
        } else if (isOption(argument, "-v")) {
            options.verbose = true;
        } else {
            options.directory = argument;
        }
    }
    return nullptr;
}
