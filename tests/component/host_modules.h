#pragma once
#include <gtest/gtest.h>

#include <string>

#include "component/HostBroker.h"
#include "host_module/test_host.h"

// One make of the test's host module, in the process under the name that the broker looks for, with an event
// that says that the host is ready.
class HostModule {
public:
    explicit HostModule(const std::string& make) {
        module_ = LoadLibraryA(Path(make).c_str());
        EXPECT_NE(module_, nullptr) << make << ": " << GetLastError();
        const auto function = reinterpret_cast<TestHostStateFunction>(
            reinterpret_cast<void*>(GetProcAddress(module_, "TestHostState")));
        host_ = function();
        *host_ = {};
        host_->readyEvent = CreateEventA(nullptr, TRUE, TRUE, nullptr);
    }
    ~HostModule() {
        CloseHandle(host_->readyEvent);
        FreeLibrary(module_);
    }
    HostModule(const HostModule&) = delete;
    HostModule& operator=(const HostModule&) = delete;

    TestHost* operator->() const { return host_; }
    // What was asked of the module since the last call.
    std::string log() const {
        std::string text = host_->log;
        host_->log[0] = '\0';
        return text;
    }

    static std::string Path(const std::string& make);

private:
    HMODULE module_ = nullptr;
    TestHost* host_ = nullptr;
};
