#include <gtest/gtest.h>

#include "FormatDiskLib/qemu_boot.h"
#include "FormatDiskLib/test_diskette.h"

namespace {

TEST(QemuBoot, StartsTheLoader) {
    REQUIRE_TOOLS("qemu-system-i386");
    for (const unsigned index : {0U, 223U}) {
        TestDiskette diskette;
        diskette.putLoader(builtSample("exit_loader.bin"), index, 2 + index * 10);
        const ToolRun run = bootInQemu(diskette.bytes);
        EXPECT_EQ(run.status, exitOfTestLoader) << run.output;
        EXPECT_NE(run.output.find("QZLOADER started"), std::string::npos) << run.output;
    }
}

}  // namespace
