#pragma once
#include <string>
#include <vector>

#include "host/frame/platform.h"

// Takes names as they are and writes down the rest.
class FakePlatform : public host::Platform {
public:
    std::string windowsPath(const std::string& name) const override { return name; }
    void setMedium(const std::string& state) override { done.push_back("medium " + state); }
    void screenshot(HWND, const std::string& file) override { done.push_back("picture " + file); }
    void save() override { done.emplace_back("save"); }

    std::vector<std::string> done;
};
