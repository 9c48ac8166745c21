#pragma once
#include <fstream>
#include <span>
#include <string>

#include "support/outside_tools.h"
#include "support/temp_folder_machine.h"

// Starts a whole emulated PC, whose BIOS is not ours, from a diskette with these bytes. exit_loader.bin of
// the samples ends it with this status.
constexpr int exitOfTestLoader = 85;

inline ToolRun bootInQemu(std::span<const unsigned char> diskette) {
    const TempFolder folder;
    const std::string image = hostPath(folder).string() + "/diskette.img";
    std::ofstream(image, std::ios::binary)
        .write(reinterpret_cast<const char*>(diskette.data()), static_cast<std::streamsize>(diskette.size()));
    return runTool({"qemu-system-i386", "-nographic", "-nic", "none", "-monitor", "none", "-boot", "a",
                    "-no-reboot", "-device", "isa-debug-exit,iobase=0xf4,iosize=1", "-drive",
                    "format=raw,if=floppy,snapshot=on,file=" + image});
}
