#include "host/frame/property_store.h"

#include "host/frame/text.h"

namespace host {

namespace {

constexpr DWORD longestText = 4096;

void require(HRESULT result, const std::string& what) {
    if (result < 0) throw Failure(ExitCode::failure, "the property store refuses to " + what);
}

}  // namespace

// One open section; null object when it cannot be opened.
class PropertyStore::Section {
public:
    Section(CreateFunction* create, const std::string& name, int flag) {
        void* object = nullptr;
        if (create(&CLSID_HostPropertyStore, &IID_IHostPropertyStore, &object) < 0) return;
        store_ = static_cast<IHostPropertyStore*>(object);
        if (store_->Open(name.c_str(), flag) < 0) close();
    }
    ~Section() { close(); }
    Section(const Section&) = delete;
    Section& operator=(const Section&) = delete;

    explicit operator bool() const { return store_ != nullptr; }
    IHostPropertyStore* operator->() const { return store_; }

private:
    void close() {
        if (store_) store_->Release();
        store_ = nullptr;
    }

    IHostPropertyStore* store_ = nullptr;
};

PropertyStore::PropertyStore(const std::string& module)
    : module_(module, ExitCode::failure), create_(module_.require<CreateFunction>("DllCreateObject")) {}

std::string PropertyStore::value(const std::string& section, const std::string& name) const {
    const Section open(create_, section, 0);
    char text[longestText];
    DWORD size = longestText;
    return open && open->GetValue(name.c_str(), text, &size) >= 0 ? text : "";
}

std::vector<std::string> PropertyStore::names(const std::string& section) const {
    std::vector<std::string> result;
    const Section open(create_, section, 0);
    char name[longestText];
    DWORD size = longestText;
    for (DWORD index = 0; open && open->EnumerateValue(index, name, &size) >= 0; ++index) {
        result.emplace_back(name);
        size = longestText;
    }
    return result;
}

void PropertyStore::setValue(const std::string& section, const std::string& name, const std::string& value) {
    const Section open(create_, section, 1);
    require(open ? open->SetValue(name.c_str(), value.c_str()) : E_FAIL, "set " + utf8(section + "/" + name));
}

void PropertyStore::deleteValue(const std::string& section, const std::string& name) {
    const Section open(create_, section, 1);
    require(open ? open->DeleteValue(name.c_str()) : E_FAIL, "delete " + utf8(section + "/" + name));
}

}  // namespace host
