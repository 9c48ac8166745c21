#include "host/frame/settings_file.h"

#include <gtest/gtest.h>

#include "host/suite.h"

namespace {

// What the settings say of one section.
std::string sectionText(const std::string& section) {
    const std::string all = host::settingsText();
    const std::string head = "[Properties\\" + section + "]\n";
    const std::size_t start = all.find(head);
    if (start == std::string::npos) return {};
    const std::size_t first = start + head.size();
    return all.substr(first, all.find("\n[", first - 1) + 1 - first);
}

TEST(SettingsFile, BringsBackWhatItHasWritten) {
    const TestSection section;
    const std::string lines =
        "Pfad=C:\\\\Gr\xFC\xDF"
        "e\n"
        "\\b\\e\\n=a\\eb\\r\\nc]\n"
        "leer=\n";
    host::setSettings("no setting\n[\n[Properties\\" + section.name() + "]\n" + lines);
    EXPECT_EQ(sectionText(section.name()), lines);

    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, ("Software\\Kelvaro\\Properties\\" + section.name()).c_str(),
                            0, KEY_READ, &key),
              ERROR_SUCCESS);
    char value[64]{};
    DWORD size = sizeof(value);
    EXPECT_EQ(RegQueryValueExA(key, "[=\n", nullptr, nullptr, reinterpret_cast<BYTE*>(value), &size),
              ERROR_SUCCESS);
    EXPECT_STREQ(value, "a=b\r\nc]");
    RegCloseKey(key);
}

TEST(SettingsFile, ReplacesTheFile) {
    const std::filesystem::path file =
        std::filesystem::path(BUILD_DIRECTORY) / "host-settings" / "deep" / "settings";
    std::filesystem::remove_all(file.parent_path().parent_path());
    EXPECT_EQ(host::readSettingsFile(file), "");
    host::writeSettingsFile(file, "first, and longer");
    host::writeSettingsFile(file, "second");
    EXPECT_EQ(host::readSettingsFile(file), "second");
}

}  // namespace
