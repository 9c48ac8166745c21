#pragma once
#include <windows.h>

#include <string>

// The folder with the suite's modules as they are built, a Windows path with a trailing backslash.
inline std::string suiteFolder() {
    std::string folder = BUILD_DIRECTORY "/host/";
    for (char& character : folder) {
        if (character == '/') character = '\\';
    }
    return folder;
}

// A section of the property store for one test case, removed with the object.
class TestSection {
public:
    TestSection() : name_("Test" + std::to_string(GetCurrentThreadId())) { remove(); }
    ~TestSection() { remove(); }
    TestSection(const TestSection&) = delete;
    TestSection& operator=(const TestSection&) = delete;
    const std::string& name() const { return name_; }

private:
    void remove() const {
        RegDeleteKeyA(HKEY_CURRENT_USER, ("Software\\Kelvaro\\Properties\\" + name_).c_str());
    }
    std::string name_;
};
