#include "winlayer/windows/window_class.h"

#include <algorithm>

namespace winlayer {

std::string atomKey(LPCSTR name) {
    if (IS_INTRESOURCE(name)) {
        return '#' + std::to_string(reinterpret_cast<ULONG_PTR>(name));
    }
    std::string key = name;
    std::transform(key.begin(), key.end(), key.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return key;
}

std::shared_ptr<const WindowClass> WindowClasses::add(WindowClass windowClass) {
    const std::string key = atomKey(windowClass.name.c_str());
    if (classes_.contains(key)) {
        return nullptr;
    }
    if (windowClass.atom == 0) {
        windowClass.atom = nextAtom_++;
    }
    return classes_[key] = std::make_shared<const WindowClass>(std::move(windowClass));
}

std::shared_ptr<const WindowClass> WindowClasses::find(LPCSTR name) const {
    if (IS_INTRESOURCE(name)) {
        const auto atom = static_cast<ATOM>(reinterpret_cast<ULONG_PTR>(name));
        const auto found = std::find_if(classes_.begin(), classes_.end(),
                                        [&](const auto& entry) { return entry.second->atom == atom; });
        return found != classes_.end() && atom != 0 ? found->second : nullptr;
    }
    const auto found = classes_.find(atomKey(name));
    return found != classes_.end() ? found->second : nullptr;
}

bool WindowClasses::remove(LPCSTR name) {
    const auto found = find(name);
    return found != nullptr && classes_.erase(atomKey(found->name.c_str())) != 0;
}

}  // namespace winlayer
