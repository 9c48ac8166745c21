#include "state.h"

extern "C" HRESULT WINAPI DllGetEventHandle(HANDLE* event) {
    *event = state().readyEvent;
    return state().eventResult;
}
