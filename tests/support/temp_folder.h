#pragma once
#include <windows.h>

#include <string>

// A fresh, empty folder for one test case, made below the system's temporary directory and removed with
// everything in it when the object goes. What cannot be removed, because a handle is still open for example,
// fails the test.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    // Absolute, without a trailing backslash.
    const std::string& path() const { return path_; }
    // The path of something in the folder, as in folder / "a.txt" or folder / "sub\\a.txt".
    std::string operator/(const std::string& name) const { return path_ + "\\" + name; }

    // Writes a file with this content and returns its path.
    std::string file(const std::string& name, const std::string& content = "") const;
    // Makes a directory, whose parent exists, and returns its path.
    std::string directory(const std::string& name) const;

private:
    std::string path_;
};

// The whole content of a file; a file that cannot be read fails the test.
std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& content);
bool exists(const std::string& path);
