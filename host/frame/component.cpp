#include "host/frame/component.h"

#include <utility>

namespace host {

namespace {

using CreateFunction = DWORD_PTR WINAPI(HWND frame, DWORD reserved);
using DestroyFunction = DWORD_PTR WINAPI(DWORD_PTR component, DWORD reserved);
using RegistrationFunction = HRESULT WINAPI();

}  // namespace

Component::Component(const std::string& library) : module_(library, ExitCode::notInstalled) {}

void Component::create(HWND frame) {
    const auto createComponent = module_.require<CreateFunction>("CreateComponentUI");
    module_.require<DestroyFunction>("DestroyComponentUI");
    instance_ = createComponent(frame, 0);
    if (instance_ == 0) throw Failure(ExitCode::failure, "the component makes no user interface");
}

void Component::destroy() {
    const DWORD_PTR instance = std::exchange(instance_, 0);
    if (instance != 0) module_.find<DestroyFunction>("DestroyComponentUI")(instance, 0);
}

void Component::registerSelf() {
    callRegistration("DllRegisterServer");
}

void Component::unregisterSelf() {
    callRegistration("DllUnregisterServer");
}

void Component::callRegistration(const char* name) {
    const HRESULT result = module_.require<RegistrationFunction>(name)();
    if (result < 0) throw Failure(ExitCode::failure, std::string(name) + " failed");
}

}  // namespace host
