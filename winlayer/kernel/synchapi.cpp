#include "winlayer/include/synchapi.h"

#include "winlayer/base/last_error.h"
#include "winlayer/file_system/file_object.h"
#include "winlayer/kernel/event.h"
#include "winlayer/machine.h"

namespace {

using winlayer::EventObject;
using winlayer::Machine;

std::shared_ptr<EventObject> eventOf(HANDLE handle) {
    auto event = Machine::current().handles.get<EventObject>(handle);
    if (event == nullptr) {
        SetLastError(ERROR_INVALID_HANDLE);
    }
    return event;
}

}  // namespace

HANDLE WINAPI CreateEventA(LPSECURITY_ATTRIBUTES /*security*/, BOOL manualReset, BOOL signalled,
                           LPCSTR name) try {
    if (winlayer::denied(__func__)) {
        return nullptr;
    }
    Machine& machine = Machine::current();
    bool existed = false;
    auto event = machine.namedEvents.open(
        name, existed, [&] { return std::make_shared<EventObject>(manualReset != 0, signalled != 0); });
    const HANDLE handle = machine.handles.add(std::move(event));
    SetLastError(handle == nullptr ? ERROR_TOO_MANY_OPEN_FILES : existed ? ERROR_ALREADY_EXISTS : NO_ERROR);
    return handle;
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(nullptr);
}

BOOL WINAPI SetEvent(HANDLE event) {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    const auto object = eventOf(event);
    if (object == nullptr) {
        return FALSE;
    }
    object->set();
    return TRUE;
}

BOOL WINAPI ResetEvent(HANDLE event) {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    const auto object = eventOf(event);
    if (object == nullptr) {
        return FALSE;
    }
    object->reset();
    return TRUE;
}

BOOL WINAPI PulseEvent(HANDLE event) {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    const auto object = eventOf(event);
    if (object == nullptr) {
        return FALSE;
    }
    object->pulse();
    return TRUE;
}

// A file is always signalled: its transfers are complete when the call that started them returns.
DWORD WINAPI WaitForSingleObject(HANDLE object, DWORD milliseconds) {
    if (winlayer::denied(__func__)) {
        return WAIT_FAILED;
    }
    Machine& machine = Machine::current();
    if (const auto event = machine.handles.get<EventObject>(object)) {
        return event->wait(milliseconds, machine.clock) ? WAIT_OBJECT_0 : WAIT_TIMEOUT;
    }
    if (machine.handles.get<winlayer::FileObject>(object) != nullptr) {
        return WAIT_OBJECT_0;
    }
    SetLastError(ERROR_INVALID_HANDLE);
    return WAIT_FAILED;
}

void WINAPI Sleep(DWORD milliseconds) {
    winlayer::entered(__func__);
    Machine::current().clock.sleep(std::int64_t{milliseconds} * 1'000'000);
}
