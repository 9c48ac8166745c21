#include "Include/UtilsRegistry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <string>

#include "Include/std_exception.h"
#include "winlayer/machine.h"

namespace {

using UTILS::UtilsRegistry;
using UTILS::UtilsString;
using winlayer::ScopedMachine;
using winlayer::WindowsVersion;

const char path[] = "HKLM\\Software\\Vendor";

void fill() {
    for (const char* name : {"\\a\\b", "\\c"}) {
        UtilsRegistry key(std::string(path) + name, 1);
        key.SetValue("number", 1);
        key.SetValue("long", std::string(300, 'x'));
    }
}

struct Operation {
    const char* name;
    std::function<int(UtilsRegistry&)> run;
};

std::vector<Operation> operations() {
    return {
        {"OpenKey", [](UtilsRegistry& key) { return key.OpenKey("HKLM\\Software\\Vendor\\a"); }},
        {"CreateKey", [](UtilsRegistry& key) { return key.CreateKey("HKCU\\New"); }},
        {"OpenSubKey", [](UtilsRegistry& key) { return key.OpenSubKey("a"); }},
        {"CreateSubKey", [](UtilsRegistry& key) { return key.CreateSubKey("d"); }},
        {"GetValue number",
         [](UtilsRegistry& key) {
             DWORD data = 0;
             return key.GetValue("number", data);
         }},
        {"GetValue text",
         [](UtilsRegistry& key) {
             UtilsString data;
             return key.GetValue("long", data);
         }},
        {"SetValue number", [](UtilsRegistry& key) { return key.SetValue("number", 2); }},
        {"SetValue text", [](UtilsRegistry& key) { return key.SetValue("long", "short"); }},
        {"DeleteValue", [](UtilsRegistry& key) { return key.DeleteValue("number"); }},
        {"EnumKey",
         [](UtilsRegistry& key) {
             UtilsString name;
             return key.EnumKey(1, name);
         }},
        {"EnumValue",
         [](UtilsRegistry& key) {
             UtilsString name;
             UtilsString data;
             return key.EnumValue(1, name, data);
         }},
        {"DeleteKey named", [](UtilsRegistry& key) { return key.DeleteKey("c", 0); }},
        {"DeleteKey named tree", [](UtilsRegistry& key) { return key.DeleteKey("a", 1); }},
        {"DeleteKey", [](UtilsRegistry& key) { return key.DeleteKey(1); }},
    };
}

// The calls of one operation that the registry may refuse: the fault plan is given function by function, so
// that locks and other calls in between do not count.
std::vector<std::pair<std::string, std::size_t>> refusals(const std::vector<std::string>& calls) {
    std::vector<std::pair<std::string, std::size_t>> found;
    for (std::size_t i = 0; i < calls.size(); ++i) {
        if (calls[i].rfind("Reg", 0) == 0) {
            const auto end = calls.begin() + static_cast<std::ptrdiff_t>(i);
            found.emplace_back(calls[i], std::count(calls.begin(), end, calls[i]));
        }
    }
    return found;
}

// A fresh machine and key for every attempt, because an operation may have done half its work.
struct Attempt {
    explicit Attempt(WindowsVersion version) : machine(version) {
        fill();
        key.emplace(path);
        key->SetValue("number", 1);
        key->SetValue("long", std::string(300, 'x'));
    }
    ScopedMachine machine;
    std::optional<UtilsRegistry> key;
};

TEST(UtilsRegistryMachine, EveryRefusedCallIsAFailureThatLeavesTheObjectUsable) {
    for (const WindowsVersion version : {WindowsVersion::Windows98, WindowsVersion::XP}) {
        for (const Operation& operation : operations()) {
            std::vector<std::string> calls;
            {
                Attempt attempt(version);
                attempt.machine->gate.startRecording();
                ASSERT_EQ(operation.run(*attempt.key), 1) << operation.name;
                calls = attempt.machine->gate.calls();
            }
            ASSERT_FALSE(refusals(calls).empty()) << operation.name;
            for (const auto& [function, skip] : refusals(calls)) {
                SCOPED_TRACE(std::string(operation.name) + ": " + function + " number " +
                             std::to_string(skip));
                Attempt attempt(version);
                attempt.machine->gate.failFunction(function, ERROR_GEN_FAILURE, skip, 1);
                const int result = operation.run(*attempt.key);
                EXPECT_EQ(attempt.machine->gate.failedCalls(), 1u);
                if (function == "RegCloseKey") {
                    EXPECT_EQ(result, 1);
                } else {
                    EXPECT_EQ(result, 0);
                    EXPECT_EQ(attempt.key->GetLastResult(), LONG{ERROR_GEN_FAILURE});
                    EXPECT_STREQ(attempt.key->GetRegistryPath(1).c_str(), "HKLM\\Software\\Vendor\\");
                    EXPECT_EQ(attempt.key->SetValue("after", 1), 1);
                }
                attempt.key.reset();
                EXPECT_EQ(attempt.machine->handles.openCount(), 0u);
            }
        }
    }
}

TEST(UtilsRegistryMachine, ARefusedConstructionThrowsAndOpensNothing) {
    ScopedMachine machine;
    fill();
    for (const int create : {0, 1}) {
        machine->gate.reset();
        machine->gate.failFunction(create ? "RegCreateKeyExA" : "RegOpenKeyExA", ERROR_NOT_ENOUGH_MEMORY);
        try {
            const UtilsRegistry key(path, create);
            FAIL() << "nothing was thrown";
        } catch (const UTILS::std_exception& report) {
            const std::string text = report.what();
            EXPECT_NE(text.find("Error Number: 8; WinError Description: "), std::string::npos) << text;
            const std::string end = std::string("Error Condition:  Cannot ") + (create ? "Create" : "Open") +
                                    " Registry Entry:  ; value:  " + path;
            EXPECT_EQ(text.substr(text.size() - end.size()), end);
        }
        machine->gate.reset();
        EXPECT_EQ(machine->handles.openCount(), 0u);
    }
}

TEST(UtilsRegistryMachine, ARefusedCopyLeavesTheTargetAsItWas) {
    ScopedMachine machine;
    fill();
    const UtilsRegistry source(path);
    UtilsRegistry target("HKLM\\Software\\Vendor\\a");
    machine->gate.failFunction("RegOpenKeyExA", ERROR_ACCESS_DENIED);
    EXPECT_THROW(UtilsRegistry{source}, UTILS::std_exception);
    EXPECT_THROW(target = source, UTILS::std_exception);
    EXPECT_STREQ(target.GetRegistryPath(1).c_str(), "HKLM\\Software\\Vendor\\a\\");
    EXPECT_EQ(target.SetValue("after", 1), 1);
    EXPECT_EQ(machine->handles.openCount(), 2u);
}

TEST(UtilsRegistryMachine, NothingIsAskedOfTheRegistryForNothing) {
    ScopedMachine machine;
    fill();
    UtilsRegistry key(path);
    UtilsRegistry closed(std::string(path) + "\\a");
    ASSERT_EQ(closed.DeleteKey(0), 1);
    UtilsRegistry root("HKLM\\");
    machine->gate.startRecording();
    DWORD number = 0;
    UtilsString text;
    EXPECT_EQ(key.SetValue("", 1) + key.SetValue("", "x") + key.GetValue("", number) +
                  key.GetValue("", text) + key.DeleteValue("") + key.OpenSubKey("") + key.DeleteKey("", 1) +
                  key.OpenKey("") + root.DeleteKey(1),
              0);
    EXPECT_EQ(closed.SetValue("V", 1) + closed.GetValue("V", number) + closed.GetValue("V", text) +
                  closed.DeleteValue("V") + closed.OpenSubKey("b") + closed.CreateSubKey("b") +
                  closed.DeleteKey("b", 0) + closed.EnumKey(0, text) + closed.EnumValue(0, text, text) +
                  closed.DeleteKey(1),
              0);
    for (const std::string& call : machine->gate.calls()) {
        EXPECT_NE(call.substr(0, 3), "Reg") << call;
    }
}

// Each family in its own way: the result is the same.
TEST(UtilsRegistryMachine, DeletingIsTheSameOnEveryWindows) {
    for (const WindowsVersion version :
         {WindowsVersion::Windows95, WindowsVersion::WindowsMe, WindowsVersion::NT4,
          WindowsVersion::Windows2000, WindowsVersion::Later}) {
        ScopedMachine machine(version);
        fill();
        {
            UtilsRegistry key(path);
            EXPECT_EQ(key.DeleteKey("a", 0), 0);
            EXPECT_EQ(key.GetLastResult(), LONG{ERROR_ACCESS_DENIED});
            UtilsString name;
            EXPECT_EQ(key.EnumKey(1, name), 1) << "the tree went all the same";
            EXPECT_EQ(key.DeleteKey(1), 1);
        }
        EXPECT_THROW(UtilsRegistry{path}, UTILS::std_exception);
        EXPECT_EQ(machine->handles.openCount(), 0u);
    }
}

// Values go before their key, and keys from the deepest up, so that a failure leaves no key whose subkeys are
// out of reach.
TEST(UtilsRegistryMachine, ATreeIsDeletedFromBelow) {
    ScopedMachine machine;
    fill();
    UtilsRegistry key(path);
    machine->gate.startRecording();
    ASSERT_EQ(key.DeleteKey(1), 1);
    std::string order;
    for (const std::string& call : machine->gate.calls()) {
        order += call == "RegDeleteValueA" ? "v" : call == "RegDeleteKeyA" ? "k" : "";
    }
    EXPECT_EQ(order, "vvkkvvkk");
}

TEST(UtilsRegistryMachine, ATreeDeeperThanAnyStackIsDeleted) {
    ScopedMachine machine;
    {
        UtilsRegistry key("HKCU\\deep", 1);
        for (int level = 0; level < 2000; ++level) {
            ASSERT_EQ(key.CreateSubKey("k"), 1);
        }
        ASSERT_EQ(key.OpenKey("HKCU\\deep"), 1);
        EXPECT_EQ(key.DeleteKey(1), 1);
    }
    EXPECT_EQ(machine->handles.openCount(), 0u);
}

// 255 bytes come with the first question, more with a second one.
TEST(UtilsRegistryMachine, TextsOfUsualLengthCostOneCall) {
    ScopedMachine machine;
    UtilsRegistry key(path, 1);
    for (const auto& [length, calls] : {std::pair{254, 1}, std::pair{255, 2}}) {
        ASSERT_EQ(key.SetValue("V", std::string(static_cast<std::size_t>(length), 'x')), 1);
        UtilsString data;
        machine->gate.startRecording();
        EXPECT_EQ(key.GetValue("V", data), 1);
        const std::vector<std::string> made = machine->gate.calls();
        EXPECT_EQ(std::count(made.begin(), made.end(), "RegQueryValueExA"), calls) << length;
        machine->gate.reset();
    }
}

// Names of values may be far longer than those of keys.
TEST(UtilsRegistryMachine, NamesAndDataLargerThanAnyBufferAreReadWhole) {
    const ScopedMachine machine;
    UtilsRegistry key(path, 1);
    const std::string name(16383, 'n');
    const std::string data(100000, 'd');
    ASSERT_EQ(key.SetValue(name, data), 1);
    UtilsString foundName;
    UtilsString foundData;
    ASSERT_EQ(key.EnumValue(0, foundName, foundData, 10), 1);
    EXPECT_EQ(foundName.GetSTLString(), name);
    EXPECT_EQ(foundData.GetSTLString(), data);
    EXPECT_EQ(key.DeleteKey(1), 1) << "a value of any name goes with its key";
}

}  // namespace
