#include "app/banner.h"

#include "app/version.h"
#include "sweep/console.h"

void printBanner()
{
    constexpr const char *rule =
        ".----------------------------------------------------------------\n";
    print("%s. kxDeleteOldFiles  %s\n. %s\n%s", rule, KX_VERSION, KX_DESCRIPTION, rule);
}

void printUsage()
{
    print("\nUsage:\n\n");
    print("  kxDeleteOldFiles   directory  [-do <days_old>]  [-v]\n");
    print("\n");
    print("  directory: The directory to remove files from.\n");
    print("             Subfolders are automatically searched as well. "
          "Empty subfolders are deleted.\n");
    print("             The directory can contain a folder with a * wildcard "
          "to be replaced by ALL folder found\n");
    print("  -do <days_old>: This tool does not delete files if they are not older than "
          "<days_old> days. Default: 14 days\n");
    print("  -v: Enable verbose messages.\n");
    print("Note: There is no required order for the commandline flags\n");
    print("\n");
    print("\n");
    print("Example commandlines: \n");
    print("   Delete files from folder C:\\temp \n");
    print("       kxDeleteOldFiles C:\\temp -do 7  \n");
    print("\n");
    print("   Delete files from the temp folder of all users\n");
    print("       kxDeleteOldFiles -do 14 c:\\Users\\*\\AppData\\Local\\Temp    \n");
    print("\n");
    print("   Delete files from the temp folder of all users starting with 'm'\n");
    print("       kxDeleteOldFiles -do 14 c:\\Users\\m*\\AppData\\Local\\Temp \n");
    print("\n");
    print("\n");
}
