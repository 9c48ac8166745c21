#include "winlayer/machine.h"

#include <atomic>
#include <cstdlib>
#include <stdexcept>

#include "winlayer/dialogs/system_classes.h"
#include "winlayer/host_files/host_folder.h"

namespace winlayer {

namespace {

std::atomic<Machine*> currentMachine{nullptr};

std::shared_ptr<PrivateFolder> privateFolderOf(const Machine& machine) {
    const Drive* drive = machine.drives.find('C');
    return drive != nullptr ? std::dynamic_pointer_cast<PrivateFolder>(drive->files) : nullptr;
}

Machine& defaultMachine();

// Windows closes what a program leaves open.
void endDefaultMachine() {
    defaultMachine().drives.settle();
    if (const auto folder = privateFolderOf(defaultMachine())) {
        folder->discard();
    }
}

bool hasLongPathNames(WindowsVersion version) {
    return version != WindowsVersion::Windows95 && version != WindowsVersion::NT351 &&
           version != WindowsVersion::NT4;
}

// If the ANSI code page cannot represent the path, the program starts at the root.
void startInHostDirectory(Machine& machine) {
    std::error_code error;
    const auto directory = std::filesystem::current_path(error);
    try {
        machine.drives.setCurrentDirectory(machine.drives.fromHost(directory));
    } catch (const std::invalid_argument&) {
        machine.drives.setCurrentDirectory("Z:\\");
    }
}

// The program's own machine is never destroyed, because objects that outlive main() still take locks; at exit
// only its files on the host are removed.
Machine& defaultMachine() {
    static Machine* const machine = [] {
        auto made = std::make_unique<Machine>();
        startInHostDirectory(*made);
        std::atexit(endDefaultMachine);
        return made.release();
    }();
    return *machine;
}

}  // namespace

Machine::Machine(WindowsVersion windowsVersion) {
    version = windowsVersion;
    if (!hasLongPathNames(version)) {
        modules.removeFunction(modules.find("kernel32.dll"), "GetLongPathNameA");
    }
    addSystemClasses(windows.classes);
    modules.addSystemModule(
        "riched32.dll", [this] { addRichEditClass(windows.classes); },
        [this] { removeRichEditClass(windows.classes); });
    drives.mountPrivateFolder('C');
    drives.mountFolder('Z', "/");
}

Machine::~Machine() = default;

HMODULE Machine::addInstallerLibrary() {
    const HMODULE library = modules.addSystemModule("msi.dll", {}, {});
    const auto add = [&](const char* name, auto* function) {
        modules.addFunction(library, name, reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(function)));
    };
    add("MsiDecomposeDescriptorA", &MsiDecomposeDescriptorA);
    add("MsiOpenDatabaseA", &MsiOpenDatabaseA);
    add("MsiDatabaseOpenViewA", &MsiDatabaseOpenViewA);
    add("MsiViewExecute", &MsiViewExecute);
    add("MsiViewFetch", &MsiViewFetch);
    add("MsiRecordGetStringA", &MsiRecordGetStringA);
    add("MsiGetComponentPathA", &MsiGetComponentPathA);
    add("MsiGetProductInfoA", &MsiGetProductInfoA);
    add("MsiCloseHandle", &MsiCloseHandle);
    add("MsiGetShortcutTargetA", &MsiGetShortcutTargetA);
    return library;
}

Machine& Machine::current() {
    Machine* const machine = currentMachine.load(std::memory_order_acquire);
    return machine != nullptr ? *machine : defaultMachine();
}

// Each area gets its own part of the current machine.
SystemSettings& SystemSettings::current() {
    return Machine::current();
}

Gate& Gate::current() {
    return Machine::current().gate;
}

Drives& Drives::current() {
    return Machine::current().drives;
}

HandleTable& HandleTable::current() {
    return Machine::current().handles;
}

NamedEvents& NamedEvents::current() {
    return Machine::current().namedEvents;
}

LocalMemory& LocalMemory::current() {
    return Machine::current().localMemory;
}

Registry& Registry::current() {
    return Machine::current().registry;
}

Security& Security::current() {
    return Machine::current().security;
}

Clock& Clock::current() {
    return Machine::current().clock;
}

MessageQueues& MessageQueues::current() {
    return Machine::current().messages;
}

Windows& Windows::current() {
    return Machine::current().windows;
}

Graphics& Graphics::current() {
    return Machine::current().graphics;
}

Modules& Modules::current() {
    return Machine::current().modules;
}

Shell& Shell::current() {
    return Machine::current().shell;
}

Com& Com::current() {
    return Machine::current().com;
}

Installer& Installer::current() {
    return Machine::current().installer;
}

ScopedMachine::ScopedMachine(WindowsVersion version)
    : machine_(version), previous_(currentMachine.exchange(&machine_, std::memory_order_acq_rel)) {}

// Code that modules run while they are unloaded still sees the machine that they were loaded on.
ScopedMachine::~ScopedMachine() {
    machine_.modules.unloadAll();
    currentMachine.store(previous_, std::memory_order_release);
}

}  // namespace winlayer
