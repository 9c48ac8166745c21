#pragma once
#include <windows.h>

// The Windows systems that the file, drive and registry code distinguishes; 0 is any other. 4 and above are
// the NT family.
enum ostype : DWORD {
    OS_UNKNOWN = 0,
    OS_WINDOWS_95 = 1,
    OS_WINDOWS_98 = 2,
    OS_WINDOWS_ME = 3,
    OS_WINDOWS_NT3 = 4,
    OS_WINDOWS_NT4 = 5,
    OS_WINDOWS_2000 = 6,
    OS_WINDOWS_XP = 7
};

// Detects the Windows version and whether the user is a local administrator.
class CNTAdminObject {
public:
    // Detects the system; OS_UNKNOWN if it is none of the known ones. Throws nothing.
    CNTAdminObject();
    CNTAdminObject(const CNTAdminObject& other) = default;
    CNTAdminObject& operator=(const CNTAdminObject& other) = default;
    virtual ~CNTAdminObject() = default;

    // The system found at construction.
    ostype GetOS() const { return system_; }

    // Whether that system belongs to the NT family.
    // Result: 1 or 0 (also for an unknown system).
    int IsNT() const { return system_ > OS_WINDOWS_ME ? 1 : 0; }

    // Whether the token of the calling thread, or of the process if the thread does not impersonate, contains
    // the local Administrators group.
    // Result: 1 or 0; 0 also on Windows 95/98/Me, on an unknown system and when a system call fails.
    // Throws std::bad_alloc. Releases the token and the group identifier before it returns.
    int RunningAsAdministrator();
    int IsAdmin() { return RunningAsAdministrator(); }

protected:
    // Sets the system from the version that Windows reports; an unknown version or a failure leaves it
    // unchanged.
    void DetermineOS();

private:
    PSID group_ = nullptr;  // held only while RunningAsAdministrator runs
    ostype system_ = OS_UNKNOWN;
};
