#include "winlayer/modules/shared_object.h"

#include <dlfcn.h>
#include <link.h>

#include <functional>

#include "winlayer/text/case_folding.h"

namespace winlayer {

namespace {

using Condition = std::function<bool(const dl_phdr_info&)>;

struct Search {
    const Condition& matches;
    std::optional<LoadedObject> found;
};

int look(dl_phdr_info* info, std::size_t /*size*/, void* argument) {
    auto& search = *static_cast<Search*>(argument);
    if (search.matches(*info)) {
        search.found = LoadedObject{info->dlpi_addr, info->dlpi_name};
    }
    return search.found ? 1 : 0;
}

std::optional<LoadedObject> firstObject(const Condition& matches) {
    Search search{matches, {}};
    ::dl_iterate_phdr(look, &search);
    return search.found;
}

bool holds(const dl_phdr_info& info, ULONG_PTR address) {
    for (int i = 0; i < info.dlpi_phnum; ++i) {
        const auto& segment = info.dlpi_phdr[i];
        if (segment.p_type == PT_LOAD && address - (info.dlpi_addr + segment.p_vaddr) < segment.p_memsz) {
            return true;
        }
    }
    return false;
}

}  // namespace

std::optional<LoadedObject> objectAt(const void* address) {
    return firstObject(
        [&](const dl_phdr_info& info) { return holds(info, reinterpret_cast<ULONG_PTR>(address)); });
}

std::optional<LoadedObject> objectNamed(const std::string& fileName) {
    const std::string wanted = foldCase(fileName);
    return firstObject([&](const dl_phdr_info& info) {
        return foldCase(std::filesystem::path(info.dlpi_name).filename().string()) == wanted;
    });
}

std::unique_ptr<SharedObject> SharedObject::load(const std::filesystem::path& file, std::string& reason) {
    void* const handle = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        reason = ::dlerror();
        return nullptr;
    }
    return std::unique_ptr<SharedObject>(new SharedObject(handle));
}

SharedObject::SharedObject(void* handle) : handle_(handle), base_(static_cast<link_map*>(handle)->l_addr) {}

SharedObject::~SharedObject() {
    ::dlclose(handle_);
}

FARPROC functionOf(const LoadedObject& object, const std::string& name) {
    // The program's file name is empty; dlopen takes null for it.
    const char* const file = object.file.empty() ? nullptr : object.file.c_str();
    void* const handle = ::dlopen(file, RTLD_NOW | RTLD_NOLOAD);
    if (handle == nullptr) {
        return nullptr;
    }
    void* const address = ::dlsym(handle, name.c_str());
    ::dlclose(handle);
    const std::optional<LoadedObject> owner = objectAt(address);
    return owner && owner->base == object.base ? reinterpret_cast<FARPROC>(address) : nullptr;
}

}  // namespace winlayer
