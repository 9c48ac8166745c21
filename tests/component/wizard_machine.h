#pragma once
#include "FormatDiskLib/disk_maker_machine.h"
#include "component/PropertySection.h"
#include "host_modules.h"

// A machine for the component: a diskette drive, a host, and the disk's archive in the directory that the
// host names. It is there before the component and stays until that has gone. Pauses cost no time.
struct WizardMachine {
    explicit WizardMachine(winlayer::WindowsVersion version) : pc(version), host("whole") {
        pc.machine().clock.stop();
        hostBroker.Start();
        installIn(pc.archiveFolder());
        hostBroker.Stop();
        host.log();
    }

    // What the host names as the product's directory.
    static void installIn(const std::string& directory) {
        PropertySection section;
        section.Open("GlobalProperties", 1);
        section.SetValue("InstallDir", directory.c_str());
    }
    static void removeInstallDirectory() {
        PropertySection section;
        section.Open("GlobalProperties", 1);
        section.DeleteValue("InstallDir");
    }

    DiskMakerMachine pc;
    HostModule host;
};
