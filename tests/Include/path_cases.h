#pragma once
#include <windows.h>

#include <array>
#include <string>

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

inline UTILS::CUtilsPath path(const std::string& text) {
    return UTILS::CUtilsPath(text, 0, 0, 0);
}
