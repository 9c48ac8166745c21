#pragma once
#include <memory>
#include <string>

#include "winlayer/base/clock.h"
#include "winlayer/base/gate.h"
#include "winlayer/base/handle_table.h"
#include "winlayer/base/local_memory.h"
#include "winlayer/base/system_settings.h"
#include "winlayer/files/drives.h"
#include "winlayer/gdi/graphics.h"
#include "winlayer/kernel/named_events.h"
#include "winlayer/modules/modules.h"
#include "winlayer/registry/registry.h"
#include "winlayer/registry/security.h"
#include "winlayer/shell/com.h"
#include "winlayer/shell/installer.h"
#include "winlayer/shell/shell.h"
#include "winlayer/windows/message_queue.h"
#include "winlayer/windows/window_system.h"

namespace winlayer {

// The simulated Windows: Windows XP, unless made as another version. Drive C: is a private folder with the
// Windows directories, made on first use and removed with the machine; Z: is the host's root; the current
// directory is "C:\\". A program gets a machine on first use; it lasts until the program ends and starts in
// the host's current directory, seen through Z:. A test makes its own with ScopedMachine. The members are
// public: a test or program sets what it needs before the product runs.
class Machine : public SystemSettings {
public:
    explicit Machine(WindowsVersion windowsVersion = WindowsVersion::XP);
    ~Machine();
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    static Machine& current();

    // Adds MSI.DLL, which works on `installer`, to the system's modules; without this call there is none.
    // Returns its handle, so that a test can remove functions from it.
    HMODULE addInstallerLibrary();

    Gate gate;
    Drives drives{*this};
    HandleTable handles;
    NamedEvents namedEvents;
    LocalMemory localMemory;
    Registry registry;
    Security security;
    Clock clock;
    MessageQueues messages;
    Windows windows;
    Graphics graphics;
    Modules modules{*this, drives};
    Shell shell;
    Com com;
    Installer installer;
};

// Replaces the current machine with one of its own until the end of the scope. Scopes nest.
class ScopedMachine {
public:
    explicit ScopedMachine(WindowsVersion version = WindowsVersion::XP);
    ~ScopedMachine();
    ScopedMachine(const ScopedMachine&) = delete;
    ScopedMachine& operator=(const ScopedMachine&) = delete;

    Machine& operator*() { return machine_; }
    Machine* operator->() { return &machine_; }

private:
    Machine machine_;
    Machine* previous_;
};

}  // namespace winlayer
