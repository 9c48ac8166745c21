#include "host_modules.h"

std::string HostModule::Path(const std::string& make) {
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, sizeof path);
    std::string folder = path;
    folder.resize(folder.rfind('\\') + 1);
    return folder + "host_module\\" + make + "\\QXPM.dll";
}
