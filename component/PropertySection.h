#pragma once
#include <windows.h>

#include "host_objects.h"

// One section of the host's property store, open from Open to Close or the end of the object. A store that
// cannot be reached is never more than a closed section: its values are missing, its changes refused.
// Operations answer yes or no and throw nothing.
class PropertySection {
public:
    PropertySection() = default;
    ~PropertySection() { Close(); }
    PropertySection(const PropertySection&) = delete;
    PropertySection& operator=(const PropertySection&) = delete;

    // Opens a section, closing the one that was open. flag: as the store's own Open.
    bool Open(const char* section, int flag);
    // Reads a value into a buffer of `size` bytes (1 or more), which is a zero-terminated text in any case:
    // an empty one when the answer is no.
    bool GetValue(const char* name, char* buffer, DWORD size);
    bool SetValue(const char* name, const char* value);
    bool DeleteValue(const char* name);
    void Close();

private:
    IHostPropertyStore* store_ = nullptr;
};
