#pragma once
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <string>

// A fresh folder of the host, away from any machine; removed with everything in it.
class HostDirectory {
public:
    HostDirectory() {
        std::string name = (std::filesystem::temp_directory_path() / "winlayer-XXXXXX").string();
        EXPECT_NE(mkdtemp(name.data()), nullptr);
        path_ = name;
    }
    ~HostDirectory() { std::filesystem::remove_all(path_); }
    HostDirectory(const HostDirectory&) = delete;
    HostDirectory& operator=(const HostDirectory&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};
