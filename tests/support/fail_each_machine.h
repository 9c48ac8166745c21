#pragma once
#include <gtest/gtest.h>

#include <cstddef>

#include "support/memory_drive_machine.h"
#include "winlayer/machine.h"

namespace test {

// Runs a scenario on fresh machines, whose C: lives in memory, each time failing the next of the system calls
// that it makes, until one run gets through without a failure. `prepare` sets the machine up, `run` is what
// the calls are failed of (it deals with its exceptions), `check` looks at what is left. No run may leave a
// handle open.
template <class Prepare, class Run, class Check>
void failEachCall(winlayer::WindowsVersion version, DWORD error, Prepare prepare, Run run, Check check) {
    for (std::size_t k = 0;; ++k) {
        SCOPED_TRACE("failing call " + std::to_string(k));
        winlayer::ScopedMachine machine(version);
        MemoryDrive::mount(*machine, 'C');
        prepare();
        const std::size_t open = machine->handles.openCount();
        machine->gate.failCall(k, error);
        run();
        const bool failed = machine->gate.failedCalls() != 0;
        machine->gate.reset();
        EXPECT_EQ(machine->handles.openCount(), open) << "a handle was left open";
        check(failed);
        if (!failed) {
            EXPECT_GT(k, 0U) << "the scenario makes no system call";
            return;
        }
        if (testing::Test::HasFatalFailure() || k > 20000) {
            ADD_FAILURE() << "the loop does not end";
            return;
        }
    }
}

}  // namespace test
