#include "PropertySection.h"

#include "HostBroker.h"

bool PropertySection::Open(const char* section, int flag) {
    Close();
    void* object = nullptr;
    if (FAILED(hostBroker.CreateHostObject(CLSID_HostPropertyStore, IID_IHostPropertyStore, &object)) ||
        object == nullptr) {
        return false;
    }
    store_ = static_cast<IHostPropertyStore*>(object);
    if (FAILED(store_->Open(section, flag))) {
        Close();
        return false;
    }
    return true;
}

bool PropertySection::GetValue(const char* name, char* buffer, DWORD size) {
    buffer[0] = '\0';
    if (store_ == nullptr) {
        return false;
    }
    DWORD stored = size;
    const bool found = SUCCEEDED(store_->GetValue(name, buffer, &stored));
    buffer[found ? size - 1 : 0] = '\0';
    return found;
}

bool PropertySection::SetValue(const char* name, const char* value) {
    return store_ != nullptr && SUCCEEDED(store_->SetValue(name, value));
}

bool PropertySection::DeleteValue(const char* name) {
    return store_ != nullptr && SUCCEEDED(store_->DeleteValue(name));
}

void PropertySection::Close() {
    if (store_ != nullptr) {
        store_->Release();
        store_ = nullptr;
    }
}
