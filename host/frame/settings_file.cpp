#include "host/frame/settings_file.h"

#include <windows.h>

#include <fstream>
#include <set>
#include <sstream>
#include <vector>

#include "host/frame/failure.h"

namespace host {

namespace {

constexpr const char* suiteKey = "Software\\Kelvaro";
constexpr DWORD longestName = 16384;

struct Escape {
    char character;
    char letter;
};
constexpr Escape escapes[] = {{'\\', '\\'}, {'\n', 'n'}, {'\r', 'r'}, {'=', 'e'}, {'[', 'b'}};

std::string escaped(const std::string& text) {
    std::string result;
    for (const char character : text) {
        char letter = '\0';
        for (const Escape& escape : escapes) {
            if (escape.character == character) letter = escape.letter;
        }
        if (letter != '\0') result += '\\';
        result += letter != '\0' ? letter : character;
    }
    return result;
}

std::string unescaped(const std::string& text) {
    std::string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        char character = text[at];
        if (character == '\\' && at + 1 < text.size()) {
            ++at;
            for (const Escape& escape : escapes) {
                if (escape.letter == text[at]) character = escape.character;
            }
        }
        result += character;
    }
    return result;
}

// Sorted by name, so that equal settings give equal texts.
void writeValues(HKEY key, std::string& text) {
    std::set<std::string> lines;
    std::vector<char> name(longestName);
    std::vector<char> value(longestName);
    for (DWORD index = 0;; ++index) {
        DWORD nameLength = longestName;
        DWORD size = longestName - 1;
        DWORD type = 0;
        const LONG error = RegEnumValueA(key, index, name.data(), &nameLength, nullptr, &type,
                                         reinterpret_cast<BYTE*>(value.data()), &size);
        if (error == ERROR_NO_MORE_ITEMS) break;
        if (error != ERROR_SUCCESS || type != REG_SZ) continue;
        value[size] = '\0';
        lines.insert(escaped(name.data()) + "=" + escaped(value.data()) + "\n");
    }
    for (const std::string& line : lines) text += line;
}

// A key and its subkeys; `below` is its path below the suite's key, with a trailing backslash.
void writeKey(const std::string& below, std::string& text) {
    HKEY key = nullptr;
    const std::string path = std::string(suiteKey) + "\\" + below;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, path.substr(0, path.size() - 1).c_str(), 0, KEY_READ, &key) !=
        ERROR_SUCCESS)
        return;
    if (!below.empty()) text += "[" + below.substr(0, below.size() - 1) + "]\n";
    writeValues(key, text);
    std::vector<char> name(longestName);
    DWORD length = longestName;
    for (DWORD index = 0;
         RegEnumKeyExA(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
         ++index) {
        writeKey(below + name.data() + "\\", text);
        length = longestName;
    }
    RegCloseKey(key);
}

void setValue(const std::string& path, const std::string& name, const std::string& value) {
    HKEY key = nullptr;
    if (RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE,
                        nullptr, &key, nullptr) != ERROR_SUCCESS)
        return;
    RegSetValueExA(key, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                   static_cast<DWORD>(value.size()) + 1);
    RegCloseKey(key);
}

}  // namespace

std::string settingsText() {
    std::string text;
    writeKey("", text);
    return text;
}

void setSettings(const std::string& text) {
    std::istringstream lines(text);
    std::string path = suiteKey;
    for (std::string line; std::getline(lines, line);) {
        if (line.size() > 2 && line.front() == '[' && line.back() == ']') {
            path = std::string(suiteKey) + "\\" + line.substr(1, line.size() - 2);
        } else if (const std::size_t equals = line.find('='); equals != std::string::npos) {
            setValue(path, unescaped(line.substr(0, equals)), unescaped(line.substr(equals + 1)));
        }
    }
}

std::string readSettingsFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

void writeSettingsFile(const std::filesystem::path& file, const std::string& text) {
    std::error_code error;
    std::filesystem::create_directories(file.parent_path(), error);
    const std::filesystem::path fresh = file.string() + ".new";
    std::ofstream stream(fresh, std::ios::binary);
    stream << text;
    stream.close();
    if (stream) std::filesystem::rename(fresh, file, error);
    if (!stream || error) throw Failure(ExitCode::failure, "cannot write " + file.string());
}

}  // namespace host
