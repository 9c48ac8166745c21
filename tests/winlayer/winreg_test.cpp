#include <windows.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "support/registry_folder.h"

// Run against the layer's registry and against Windows' own.

namespace {

class WinRegTest : public ::testing::Test {
protected:
    static HKEY create(HKEY parent, const std::string& path, DWORD* disposition = nullptr) {
        HKEY key = nullptr;
        EXPECT_EQ(::RegCreateKeyExA(parent, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                    KEY_READ | KEY_WRITE, nullptr, &key, disposition),
                  ERROR_SUCCESS)
            << path;
        return key;
    }

    LONG set(const char* name, DWORD type, const std::string& bytes) {
        return ::RegSetValueExA(key_, name, 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                                static_cast<DWORD>(bytes.size()));
    }

    const RegistryFolder folder_;
    const HKEY key_ = folder_.key();
};

TEST_F(WinRegTest, KeysAreFoundWithoutCaseAndKeepTheCaseOfTheirMaking) {
    DWORD disposition = 0;
    ::RegCloseKey(create(key_, "Alpha\\BETA\\gamma", &disposition));
    EXPECT_EQ(disposition, DWORD{REG_CREATED_NEW_KEY});
    ::RegCloseKey(create(key_, "ALPHA\\beta\\Gamma\\", &disposition));
    EXPECT_EQ(disposition, DWORD{REG_OPENED_EXISTING_KEY});
    HKEY alpha = nullptr;
    ASSERT_EQ(::RegOpenKeyExA(key_, "aLPHA", 0, KEY_READ, &alpha), ERROR_SUCCESS);
    char name[32];
    DWORD size = sizeof name;
    ASSERT_EQ(::RegEnumKeyExA(alpha, 0, name, &size, nullptr, nullptr, nullptr, nullptr), ERROR_SUCCESS);
    EXPECT_STREQ(name, "BETA");
    EXPECT_EQ(size, 4u);
    ::RegCloseKey(alpha);

    HKEY untouched = key_;
    EXPECT_EQ(::RegOpenKeyExA(key_, "Alpha\\Delta", 0, KEY_READ, &untouched), LONG{ERROR_FILE_NOT_FOUND});
}

TEST_F(WinRegTest, ValuesAreReadBySizeFirst) {
    const std::string bytes(
        "\x01\x00\xFF"
        "abc",
        6);
    ASSERT_EQ(set("Data", REG_BINARY, bytes), ERROR_SUCCESS);
    DWORD type = 0;
    DWORD size = 0;
    EXPECT_EQ(::RegQueryValueExA(key_, "dATA", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(type, DWORD{REG_BINARY});
    EXPECT_EQ(size, 6u);

    BYTE buffer[8];
    std::memset(buffer, 0x55, sizeof buffer);
    size = 5;
    EXPECT_EQ(::RegQueryValueExA(key_, "Data", nullptr, &type, buffer, &size), LONG{ERROR_MORE_DATA});
    EXPECT_EQ(size, 6u);
    EXPECT_EQ(::RegQueryValueExA(key_, "Data", nullptr, nullptr, buffer, &size), ERROR_SUCCESS);
    EXPECT_EQ(std::memcmp(buffer, bytes.data(), 6), 0);
    EXPECT_EQ(buffer[6], 0x55);

    EXPECT_EQ(::RegQueryValueExA(key_, "Data", nullptr, nullptr, buffer, nullptr),
              LONG{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(::RegQueryValueExA(key_, "Other", nullptr, nullptr, buffer, &size), LONG{ERROR_FILE_NOT_FOUND});
}

TEST_F(WinRegTest, AValueIsReplacedWithItsTypeAndMayBeEmpty) {
    ASSERT_EQ(set("V", REG_SZ, std::string("text", 5)), ERROR_SUCCESS);
    ASSERT_EQ(set("v", REG_DWORD, std::string("\x2A\0\0\0", 4)), ERROR_SUCCESS);
    DWORD type = 0;
    DWORD number = 0;
    DWORD size = sizeof number;
    ASSERT_EQ(::RegQueryValueExA(key_, "V", nullptr, &type, reinterpret_cast<BYTE*>(&number), &size),
              ERROR_SUCCESS);
    EXPECT_EQ(type, DWORD{REG_DWORD});
    EXPECT_EQ(number, 42u);

    ASSERT_EQ(set("V", REG_BINARY, ""), ERROR_SUCCESS);
    EXPECT_EQ(::RegQueryValueExA(key_, "V", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(size, 0u);

    ASSERT_EQ(set(nullptr, REG_SZ, std::string("default", 8)), ERROR_SUCCESS);
    EXPECT_EQ(::RegQueryValueExA(key_, "", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(size, 8u);

    EXPECT_EQ(::RegDeleteValueA(key_, "v"), ERROR_SUCCESS);
    EXPECT_EQ(::RegDeleteValueA(key_, "v"), LONG{ERROR_FILE_NOT_FOUND});
}

TEST_F(WinRegTest, EnumeratingReportsWhatDoesNotFitAndTheEnd) {
    ASSERT_EQ(set("First", REG_BINARY, "abc"), ERROR_SUCCESS);
    ASSERT_EQ(set("Second", REG_BINARY, "defg"), ERROR_SUCCESS);
    char name[16];
    BYTE data[16];
    DWORD type = 0;
    DWORD nameSize = 6;
    DWORD size = sizeof data;
    EXPECT_EQ(::RegEnumValueA(key_, 0, name, &nameSize, nullptr, &type, data, &size), ERROR_SUCCESS);
    EXPECT_STREQ(name, "First");
    EXPECT_EQ(nameSize, 5u);
    EXPECT_EQ(size, 3u);

    nameSize = 6;  // one too few for "Second" and its zero
    size = sizeof data;
    EXPECT_EQ(::RegEnumValueA(key_, 1, name, &nameSize, nullptr, &type, data, &size), LONG{ERROR_MORE_DATA});
    nameSize = sizeof name;
    size = 3;
    EXPECT_EQ(::RegEnumValueA(key_, 1, name, &nameSize, nullptr, &type, data, &size), LONG{ERROR_MORE_DATA});
    EXPECT_EQ(size, 4u);
    nameSize = sizeof name;
    EXPECT_EQ(::RegEnumValueA(key_, 2, name, &nameSize, nullptr, &type, data, &size),
              LONG{ERROR_NO_MORE_ITEMS});

    ::RegCloseKey(create(key_, "Subkey"));
    nameSize = 6;
    EXPECT_EQ(::RegEnumKeyExA(key_, 0, name, &nameSize, nullptr, nullptr, nullptr, nullptr),
              LONG{ERROR_MORE_DATA});
    nameSize = 7;
    EXPECT_EQ(::RegEnumKeyExA(key_, 0, name, &nameSize, nullptr, nullptr, nullptr, nullptr), ERROR_SUCCESS);
    EXPECT_STREQ(name, "Subkey");
    EXPECT_EQ(::RegEnumKeyExA(key_, 1, name, &nameSize, nullptr, nullptr, nullptr, nullptr),
              LONG{ERROR_NO_MORE_ITEMS});
}

TEST_F(WinRegTest, DeletedKeysAnswerSoToTheirOpenHandles) {
    const HKEY gone = create(key_, "Gone");
    ASSERT_EQ(::RegDeleteKeyA(key_, "GONE"), ERROR_SUCCESS);
    EXPECT_EQ(::RegDeleteKeyA(key_, "Gone"), LONG{ERROR_FILE_NOT_FOUND});
    char name[16];
    DWORD size = sizeof name;
    HKEY other = nullptr;
    EXPECT_EQ(::RegQueryValueExA(gone, "V", nullptr, nullptr, nullptr, &size), LONG{ERROR_KEY_DELETED});
    EXPECT_EQ(::RegSetValueExA(gone, "V", 0, REG_SZ, reinterpret_cast<const BYTE*>(""), 1),
              LONG{ERROR_KEY_DELETED});
    EXPECT_EQ(::RegEnumKeyExA(gone, 0, name, &size, nullptr, nullptr, nullptr, nullptr),
              LONG{ERROR_KEY_DELETED});
    EXPECT_EQ(::RegOpenKeyExA(gone, "X", 0, KEY_READ, &other), LONG{ERROR_KEY_DELETED});
    EXPECT_EQ(::RegCloseKey(gone), ERROR_SUCCESS);
}

}  // namespace
