#include "app/folder_run.h"
#include "app/free_space.h"

#include "support/files.h"
#include "support/text_printing.h"

#include <gmock/gmock.h>

namespace {

TEST(FreeSpace, IsThatOfTheDrive)
{
    ULARGE_INTEGER bytes;
    GetDiskFreeSpaceExW(L"X:\\", &bytes, nullptr, nullptr);
    EXPECT_NEAR(static_cast<double>(bytes.QuadPart >> 20), freeDriveSpaceMiB(q("X:\\a")), 2000);
    EXPECT_EQ(1000u, freeDriveSpaceMiB(q("Q:\\no such drive")));
}

TEST(FolderRun, HandsOnItsReportAtOnce)
{
    const ScratchFolder scratch;
    EXPECT_THAT(flushedBy([] { runFolder(q("X:\\scratch"), 14, false); }),
                testing::EndsWith(" MiB\n\n"));
    EXPECT_EQ("Warning: directory X:\\no does not exist!\n",
              flushedBy([] { runFolder(q("X:\\no"), 14, false); }));
}

} // namespace
