#pragma once
#include <filesystem>
#include <string>
#include <vector>

#include "tools/common/program.h"

namespace tools::zar {

struct CreateOptions {
    std::filesystem::path archive;
    std::filesystem::path folder;  // empty when a list is given
    std::filesystem::path list;
};
struct ListOptions {
    std::filesystem::path archive;
};
struct ExtractOptions {
    std::filesystem::path archive;
    std::vector<std::string> names;  // empty: all files
    std::filesystem::path folder;
    bool stripFirst = false;
};
struct TestOptions {
    std::filesystem::path archive;
};

// Each does one command and throws Problem when it fails; nothing partial is then left under a final name.
void create(const CreateOptions& options, Session& session);
void list(const ListOptions& options, Session& session);
void extract(const ExtractOptions& options, Session& session);
void test(const TestOptions& options, Session& session);

}  // namespace tools::zar
