#include <gtest/gtest.h>

#include <fstream>

#include "FormatDiskLib/test_diskette.h"
#include "support/outside_tools.h"
#include "support/temp_folder_machine.h"

// A start from diskette on a whole emulated PC, whose BIOS is not ours.

namespace {

ToolRun boot(const TestDiskette& diskette) {
    const TempFolder folder;
    const std::string image = hostPath(folder).string() + "/diskette.img";
    std::ofstream(image, std::ios::binary)
        .write(reinterpret_cast<const char*>(diskette.bytes.data()),
               static_cast<std::streamsize>(diskette.bytes.size()));
    return runTool({"qemu-system-i386", "-nographic", "-nic", "none", "-monitor", "none", "-boot", "a",
                    "-no-reboot", "-device", "isa-debug-exit,iobase=0xf4,iosize=1", "-drive",
                    "format=raw,if=floppy,snapshot=on,file=" + image});
}

constexpr int exitOfTestLoader = 85;

TEST(QemuBoot, StartsTheLoader) {
    REQUIRE_TOOLS("qemu-system-i386");
    for (const unsigned index : {0U, 223U}) {
        TestDiskette diskette;
        diskette.putLoader(builtSample("exit_loader.bin"), index, 2 + index * 10);
        const ToolRun run = boot(diskette);
        EXPECT_EQ(run.status, exitOfTestLoader) << run.output;
        EXPECT_NE(run.output.find("QZLOADER started"), std::string::npos) << run.output;
    }
}

}  // namespace
