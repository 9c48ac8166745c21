#pragma once
#include <string>
#include <vector>

#include "component/host_objects.h"
#include "host/frame/loaded_module.h"

namespace host {

// The suite's settings, accessed through its object module.
class PropertyStore {
public:
    // `module`: path of QXPM.dll (8-bit). Throws Failure.
    explicit PropertyStore(const std::string& module);

    // Texts are 8-bit. A missing value, also of a missing section, reads as empty.
    std::string value(const std::string& section, const std::string& name) const;
    std::vector<std::string> names(const std::string& section) const;
    // Throw Failure when the store fails.
    void setValue(const std::string& section, const std::string& name, const std::string& value);
    void deleteValue(const std::string& section, const std::string& name);

private:
    class Section;
    using CreateFunction = HRESULT WINAPI(const GUID* classId, const GUID* interfaceId, void** object);

    LoadedModule module_;
    CreateFunction* create_;
};

}  // namespace host
