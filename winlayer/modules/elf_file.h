#pragma once
#include <elf.h>
#include <link.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "winlayer/include/minwindef.h"

namespace winlayer {

// A program or shared object of the host, read from its file for what the host's loader does not report. A
// malformed file only yields less data.
class ElfFile {
public:
    explicit ElfFile(const std::filesystem::path& path);

    // Whether this process could load it.
    bool isLoadable() const { return loadable_; }
    // Offset of the entry point from the load address; 0 for none.
    ElfW(Addr) entry() const { return header_.e_entry; }
    // The content of a section; empty if there is none of this name.
    std::vector<BYTE> section(const std::string& name);
    // Names of the shared objects that it depends on.
    std::vector<std::string> needed();

private:
    std::vector<BYTE> read(ElfW(Off) offset, std::size_t size);
    std::vector<BYTE> contentOf(const ElfW(Shdr) & section);

    std::ifstream file_;
    ElfW(Off) size_ = 0;
    ElfW(Ehdr) header_{};
    std::vector<ElfW(Shdr)> sections_;
    bool loadable_ = false;
};

}  // namespace winlayer
