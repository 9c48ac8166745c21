#pragma once
#include <windows.h>

#include "host_objects.h"

// One section of the host's property store, open from Open until Close or the destructor. When the store
// cannot be reached, the section is merely closed: values are missing and changes fail. Operations return
// whether they succeeded and throw nothing.
class PropertySection {
public:
    PropertySection() = default;
    ~PropertySection() { Close(); }
    PropertySection(const PropertySection&) = delete;
    PropertySection& operator=(const PropertySection&) = delete;

    // Opens a section, closing the one that was open. flag: as for the store's own Open.
    bool Open(const char* section, int flag);
    // Reads a value into a buffer of `size` bytes (1 or more), which is always zero-terminated: empty on
    // failure.
    bool GetValue(const char* name, char* buffer, DWORD size);
    bool SetValue(const char* name, const char* value);
    bool DeleteValue(const char* name);
    void Close();

private:
    IHostPropertyStore* store_ = nullptr;
};
