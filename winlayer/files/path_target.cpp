#include "winlayer/files/path_target.h"

#include "winlayer/file_system/path_resolution.h"
#include "winlayer/files/drives.h"

namespace winlayer {

namespace {

bool isFile(const PathTarget& target) {
    FileFacts facts;
    return target.files->facts(target.below, facts) == 0 &&
           (facts.attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

}  // namespace

DWORD findTarget(const char* path, PathTarget& target) {
    if (path == nullptr) {
        return ERROR_PATH_NOT_FOUND;
    }
    const std::string text = path;
    const DWORD error = Drives::current().resolve(text, target.files, target.below);
    return error == 0 && endsWithSeparator(text) && isFile(target) ? ERROR_INVALID_NAME : error;
}

}  // namespace winlayer
