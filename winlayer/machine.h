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

// Everything the layer pretends to be: a Windows XP (or what it is made as) with the drives C:, a private
// folder with the Windows directories that is made on first use and removed with the machine, and Z:, the
// host's root; the current directory is "C:\\". A program gets one on first use, which lasts until the
// program ends and starts in the host's current directory, seen through Z:. A test makes its own with
// ScopedMachine. The members are plain: a test or program sets what it wants before the product runs.
class Machine : public SystemSettings {
public:
    explicit Machine(WindowsVersion windowsVersion = WindowsVersion::XP);
    ~Machine();
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    static Machine& current();

    // Puts MSI.DLL, which works on `installer`, among the system's modules; without it there is none. Gives
    // its handle, so that a test can take functions away.
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

// Puts a machine of its own in place of the current one until the end of the scope. Scopes nest.
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
