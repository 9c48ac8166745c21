#include "RuntimeClassName.h"

#include <cxxabi.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <typeindex>

#include "CSyncObject.h"

namespace UTILS {

namespace {
std::string Readable(const std::type_info& type) {
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
    return std::string("class ") + (status == 0 ? name.get() : type.name());
}
}  // namespace

const char* RuntimeClassName(const std::type_info& type) {
    static CCriticalSection guard;
    static std::map<std::type_index, std::string> names;
    const SectionGuard lock(guard);
    const auto found = names.find(type);
    return (found != names.end() ? found : names.emplace(type, Readable(type)).first)->second.c_str();
}

}  // namespace UTILS
