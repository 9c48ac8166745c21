#include "state.h"

#include <cstring>

TestHost& state() {
    static TestHost host;
    return host;
}

void note(const std::string& line) {
    std::strncat(state().log, (line + "\n").c_str(), sizeof state().log - std::strlen(state().log) - 1);
}

extern "C" TestHost* WINAPI TestHostState() {
    return &state();
}
