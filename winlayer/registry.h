#pragma once
#include <memory>

#include "winlayer/include/windows.h"

namespace winlayer {

// The machine's registry: in memory, empty roots at the start. Names are matched without case and keep the
// case of their making.
class Registry {
public:
    Registry();
    ~Registry();

    struct Key;
    // The root behind a predefined handle; null for any other.
    std::shared_ptr<Key> root(HKEY key) const;

private:
    struct Roots;
    std::unique_ptr<Roots> roots_;
};

}  // namespace winlayer
