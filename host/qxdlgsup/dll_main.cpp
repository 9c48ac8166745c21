#include "host/qxdlgsup/instance.h"

namespace {

HINSTANCE module = nullptr;

}  // namespace

HINSTANCE qxdlgsup::instance() {
    return module;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE self, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) module = self;
    return TRUE;
}
