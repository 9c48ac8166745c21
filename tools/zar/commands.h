#pragma once
#include <string>
#include <vector>

#include "tools/common/host_path.h"
#include "tools/common/program.h"

namespace tools::zar {

struct CreateOptions {
    Path archive;
    Path folder;  // empty when a list is given
    Path list;
};
struct ListOptions {
    Path archive;
};
struct ExtractOptions {
    Path archive;
    std::vector<std::string> names;  // empty: all files
    Path folder;
    bool stripFirst = false;
};
struct TestOptions {
    Path archive;
};

// Each runs one command and throws Problem on failure; nothing partial is then left under a final name.
void create(const CreateOptions& options, Session& session);
void list(const ListOptions& options, Session& session);
void extract(const ExtractOptions& options, Session& session);
void test(const TestOptions& options, Session& session);

}  // namespace tools::zar
