#pragma once
#include <array>
#include <optional>
#include <string>

namespace host {

// A component's entry in the section "Modules": four numbers, the path of its library and that of a picture,
// as in "5,1,0,30,C:\\Suite\\Part.dll,C:\\Suite\\Part.bmp". Either path may contain commas.
struct ModuleListing {
    std::array<int, 4> numbers{};
    std::string library;
    std::string picture;  // empty when there is none
};

// Empty for a text that is not a listing.
std::optional<ModuleListing> parseListing(const std::string& text);

}  // namespace host
