#include "registration.h"

#include "CBSTR.h"
#include "PropertySection.h"
#include "resources/resource.h"

namespace registration {

namespace {

constexpr char modulesSection[] = "Modules";
constexpr char translationsSection[] = "Translations";
constexpr char componentName[] = "Mendwell";

std::string libraryPath(HINSTANCE module) {
    char path[MAX_PATH + 1] = {};
    ::GetModuleFileNameA(module, path, MAX_PATH);
    return path;
}

}  // namespace

std::string Listing(const std::string& libraryPath) {
    std::string listing = "5,1,0,30," + libraryPath + ",";
    if (const auto point = libraryPath.rfind('.'); point != std::string::npos) {
        listing += libraryPath.substr(0, point + 1) + "bmp";
    }
    return listing;
}

void Register(HINSTANCE module) {
    PropertySection modules;
    modules.Open(modulesSection, 1);
    modules.SetValue(componentName, Listing(libraryPath(module)).c_str());
    PropertySection translations;
    translations.Open(translationsSection, 1);
    CBSTR displayName;
    displayName.LoadString(module, IDS_PRODUCT_NAME, 255);
    CBSTR valueName;
    valueName.Format("%1:%2!X!", componentName, 1);
    translations.SetValue(valueName.Text(), displayName.Text());
}

void Unregister() {
    PropertySection modules;
    modules.Open(modulesSection, 1);
    modules.DeleteValue(componentName);
}

}  // namespace registration
