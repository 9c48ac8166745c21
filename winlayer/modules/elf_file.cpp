#include "winlayer/modules/elf_file.h"

#include <algorithm>
#include <cstring>

// The header of the file that contains this code; the symbol is defined by the linker.
extern "C" __attribute__((visibility("hidden"))) const ElfW(Ehdr) __ehdr_start;

namespace winlayer {

namespace {

// As many complete records as the bytes hold.
template <class Record>
std::vector<Record> recordsIn(const std::vector<BYTE>& bytes) {
    std::vector<Record> records(bytes.size() / sizeof(Record));
    if (!records.empty()) {
        std::memcpy(records.data(), bytes.data(), records.size() * sizeof(Record));
    }
    return records;
}

// A text of a string table; empty beyond its end.
std::string textAt(const std::vector<BYTE>& texts, std::size_t offset) {
    if (offset >= texts.size()) {
        return {};
    }
    const auto start = texts.begin() + static_cast<std::ptrdiff_t>(offset);
    return {start, std::find(start, texts.end(), BYTE{0})};
}

bool isLoadableHere(const ElfW(Ehdr) & header) {
    return std::memcmp(header.e_ident, __ehdr_start.e_ident, EI_VERSION + 1) == 0 &&
           header.e_machine == __ehdr_start.e_machine && header.e_type == ET_DYN;
}

}  // namespace

ElfFile::ElfFile(const std::filesystem::path& path) : file_(path, std::ios::binary) {
    std::error_code error;
    const auto size = std::filesystem::file_size(path, error);
    size_ = error ? 0 : size;
    const auto headers = recordsIn<ElfW(Ehdr)>(read(0, sizeof header_));
    if (headers.empty() || std::memcmp(headers.front().e_ident, ELFMAG, SELFMAG) != 0) {
        return;
    }
    header_ = headers.front();
    loadable_ = isLoadableHere(header_);
    if (header_.e_shentsize == sizeof(ElfW(Shdr))) {
        sections_ = recordsIn<ElfW(Shdr)>(read(header_.e_shoff, header_.e_shnum * sizeof(ElfW(Shdr))));
    }
}

std::vector<BYTE> ElfFile::section(const std::string& name) {
    if (header_.e_shstrndx >= sections_.size()) {
        return {};
    }
    const std::vector<BYTE> names = contentOf(sections_[header_.e_shstrndx]);
    const auto found = std::find_if(sections_.begin(), sections_.end(), [&](const ElfW(Shdr) & section) {
        return section.sh_type == SHT_PROGBITS && textAt(names, section.sh_name) == name;
    });
    return found == sections_.end() ? std::vector<BYTE>() : contentOf(*found);
}

std::vector<std::string> ElfFile::needed() {
    const auto dynamic = std::find_if(sections_.begin(), sections_.end(), [](const ElfW(Shdr) & section) {
        return section.sh_type == SHT_DYNAMIC;
    });
    if (dynamic == sections_.end() || dynamic->sh_link >= sections_.size()) {
        return {};
    }
    const std::vector<BYTE> texts = contentOf(sections_[dynamic->sh_link]);
    std::vector<std::string> names;
    for (const ElfW(Dyn) & entry : recordsIn<ElfW(Dyn)>(contentOf(*dynamic))) {
        if (entry.d_tag == DT_NEEDED) {
            names.push_back(textAt(texts, entry.d_un.d_val));
        }
    }
    return names;
}

std::vector<BYTE> ElfFile::read(ElfW(Off) offset, std::size_t size) {
    if (offset > size_ || size > size_ - offset) {
        return {};
    }
    std::vector<BYTE> bytes(size);
    file_.clear();
    file_.seekg(static_cast<std::streamoff>(offset));
    file_.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size));
    return file_ ? bytes : std::vector<BYTE>();
}

std::vector<BYTE> ElfFile::contentOf(const ElfW(Shdr) & section) {
    return read(section.sh_offset, section.sh_size);
}

}  // namespace winlayer
