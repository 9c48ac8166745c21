#include "support/files.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>

namespace test {

namespace {

void collect(const std::string& folder, const std::string& prefix, std::vector<std::string>& names) {
    WIN32_FIND_DATAA entry{};
    const HANDLE search = FindFirstFileA((folder + "\\*").c_str(), &entry);
    for (BOOL more = search != INVALID_HANDLE_VALUE; more != 0; more = FindNextFileA(search, &entry)) {
        const std::string name = entry.cFileName;
        if (name == "." || name == "..") continue;
        if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
            collect(folder + "\\" + name, prefix + name + "\\", names);
        } else {
            names.push_back(prefix + name);
        }
    }
    if (search != INVALID_HANDLE_VALUE) FindClose(search);
}

}  // namespace

std::string makeFile(const TempFolder& folder, const std::string& name, const std::string& content,
                     DWORD attributes) {
    for (std::size_t end = name.find('\\'); end != std::string::npos; end = name.find('\\', end + 1)) {
        CreateDirectoryA((folder / name.substr(0, end)).c_str(), nullptr);
    }
    std::string path = folder.file(name, content);
    SetFileAttributesA(path.c_str(), attributes);
    return path;
}

std::vector<std::string> filesBelow(const std::string& folder) {
    std::vector<std::string> names;
    collect(folder, "", names);
    std::sort(names.begin(), names.end());
    return names;
}

std::uint32_t randomSeed() {
    const char* given = std::getenv("TEST_SEED");
    const auto seed = given != nullptr ? static_cast<std::uint32_t>(std::strtoul(given, nullptr, 10))
                                       : static_cast<std::uint32_t>(std::random_device()());
    std::printf("seed %u (TEST_SEED=%u repeats)\n", static_cast<unsigned>(seed), static_cast<unsigned>(seed));
    return seed;
}

}  // namespace test
