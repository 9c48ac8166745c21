#include "winlayer/include/synchapi.h"

#include "winlayer/base/clock.h"
#include "winlayer/base/gate.h"
#include "winlayer/base/handle_table.h"
#include "winlayer/base/last_error.h"
#include "winlayer/file_system/file_object.h"
#include "winlayer/kernel/event.h"
#include "winlayer/kernel/named_events.h"

namespace {

using winlayer::EventObject;

std::shared_ptr<EventObject> eventOf(HANDLE handle) {
    auto event = winlayer::HandleTable::current().get<EventObject>(handle);
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
    bool existed = false;
    auto event = winlayer::NamedEvents::current().open(
        name, existed, [&] { return std::make_shared<EventObject>(manualReset != 0, signalled != 0); });
    const HANDLE handle = winlayer::HandleTable::current().add(std::move(event));
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

// A file is always signalled: its transfers are complete when the call that starts them returns.
DWORD WINAPI WaitForSingleObject(HANDLE object, DWORD milliseconds) {
    if (winlayer::denied(__func__)) {
        return WAIT_FAILED;
    }
    if (const auto event = winlayer::HandleTable::current().get<EventObject>(object)) {
        return event->wait(milliseconds, winlayer::Clock::current()) ? WAIT_OBJECT_0 : WAIT_TIMEOUT;
    }
    if (winlayer::HandleTable::current().get<winlayer::FileObject>(object) != nullptr) {
        return WAIT_OBJECT_0;
    }
    SetLastError(ERROR_INVALID_HANDLE);
    return WAIT_FAILED;
}

void WINAPI Sleep(DWORD milliseconds) {
    winlayer::entered(__func__);
    winlayer::Clock::current().sleep(std::int64_t{milliseconds} * 1'000'000);
}
