#pragma once
#include "component/host_objects.h"
#include "host/qxpm/com_object.h"
#include "host/qxpm/open_key.h"

namespace qxpm {

// The suite's settings in the user's registry: one key per section, one text per value.
class PropertyStore final : public ComObject<PropertyStore, IHostPropertyStore, IID_IHostPropertyStore> {
public:
    HRESULT WINAPI Open(const char* section, int flag) override;
    HRESULT WINAPI EnumerateValue(DWORD index, char* name, DWORD* size) override;
    HRESULT WINAPI GetValue(const char* name, char* buffer, DWORD* size) override;
    HRESULT WINAPI SetValue(const char* name, const char* value) override;
    HRESULT WINAPI DeleteValue(const char* name) override;

private:
    OpenKey section_;
};

}  // namespace qxpm
