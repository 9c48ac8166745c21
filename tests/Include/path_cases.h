#pragma once
#include <windows.h>

#include <array>
#include <string>
#include <vector>

#include "CUtilsPath.h"

// Makes a directory the current one until the end of the scope.
class InDirectory {
public:
    explicit InDirectory(const std::string& directory) : before_(now()) {
        SetCurrentDirectoryA(directory.c_str());
    }
    InDirectory(const InDirectory&) = delete;
    InDirectory& operator=(const InDirectory&) = delete;
    ~InDirectory() { SetCurrentDirectoryA(before_.c_str()); }

    static std::string now() {
        std::array<char, 4096> buffer{};
        GetCurrentDirectoryA(static_cast<DWORD>(buffer.size()), buffer.data());
        return buffer.data();
    }

private:
    std::string before_;
};

// The answer of an operation with one output; "(none)" when it returns 0.
template <class Operation>
std::string answered(Operation operation) {
    UTILS::UtilsString answer("untouched");
    return operation(answer) ? answer.c_str() : "(none)";
}

// All entries that a walk has found, told by its two cursor operations.
template <class First, class Next>
std::vector<std::string> listed(UTILS::CUtilsPath& walked, First first, Next next) {
    std::vector<std::string> entries;
    UTILS::UtilsString entry;
    for (int more = (walked.*first)(entry); more; more = (walked.*next)(entry)) {
        entries.emplace_back(entry.c_str());
    }
    return entries;
}

inline std::vector<std::string> files(UTILS::CUtilsPath walked) {
    walked.ResetTreeSearch();
    return listed(walked, &UTILS::CUtilsPath::RetrieveFirstFile, &UTILS::CUtilsPath::RetrieveNextFile);
}

inline std::vector<std::string> directories(UTILS::CUtilsPath walked) {
    walked.ResetTreeSearch();
    return listed(walked, &UTILS::CUtilsPath::RetrieveFirstDir, &UTILS::CUtilsPath::RetrieveNextDir);
}

inline UTILS::CUtilsPath path(const std::string& text) {
    return UTILS::CUtilsPath(text, 0, 0, 0);
}
