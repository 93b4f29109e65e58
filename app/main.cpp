// The entry point: the steps of one run, and the exit codes.
#include "app/banner.h"
#include "app/folder_run.h"
#include "app/options.h"
#include "app/root_check.h"
#include "app/wildcard_folders.h"
#include "sweep/console.h"
#include "sweep/windows_api.h"
#include "text/path.h"

// Tells the C start-up code to pass on a "*" in an argument instead of expanding it to names.
// That code determines its name and type.
extern "C" {
int _dowildcard = 0; // NOLINT(*-non-const-global-variables,readability-identifier-naming)
}

namespace {

constexpr int minArguments = 3; // frozen: a directory alone gets the usage text

constexpr int exitDone = 0; // whatever happened inside the folders
constexpr int exitUsage = -1;
constexpr int exitNoRoot = 1;
constexpr int exitBadNumber = 3;

} // namespace

int main(int argc, char **argv)
{
    // Otherwise Windows asks for a missing disk in a dialog, which stops an unattended run. What
    // the parent has switched off stays off, such as the dialog after a crash.
    SetErrorMode(GetErrorMode() | SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);

    printBanner();
    if (argc - 1 < minArguments) {
        printUsage();
        return exitUsage;
    }

    if (!checkInstallRoot(argc, argv))
        return exitNoRoot;

    Options options;
    if (const char *badNumber = readOptions(argc, argv, options)) {
        print("Error: Unable to convert %s into a number!\n", badNumber);
        return exitBadNumber;
    }

    if (options.directory.contains(asterisk))
        print("Searching for folders matching '%s'.", options.directory.toLatin1().constData());
    expandWildcardFolders(options.directory, options.daysOld, options.verbose);
    return exitDone;
}
