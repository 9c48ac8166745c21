#include "winlayer/include/handleapi.h"
#include "winlayer/base/last_error.h"

#include "winlayer/base/gate.h"
#include "winlayer/base/handle_table.h"
#include "winlayer/file_system/file_object.h"
#include "winlayer/file_system/search_object.h"
#include "winlayer/include/synchapi.h"
#include "winlayer/kernel/current_process.h"

namespace {

// Flushes at every close, because an error at the last handle's close might be ignored.
DWORD settle(winlayer::KernelObject& object) try {
    const auto* const file = dynamic_cast<winlayer::FileObject*>(&object);
    return file != nullptr ? file->file->settle() : 0;
} catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

bool isPseudoHandle(HANDLE handle) {
    return handle == winlayer::currentProcess() || handle == winlayer::currentThread();
}

}  // namespace

// The handle is closed even when the fault plan fails the call: Windows refuses only handles that are no
// longer open, so a caller must not be left with one that it cannot close.
BOOL WINAPI CloseHandle(HANDLE object) {
    const DWORD planned = winlayer::deniedCode(__func__);
    winlayer::HandleTable& handles = winlayer::HandleTable::current();
    if (planned == 0 && isPseudoHandle(object)) {
        return TRUE;
    }
    const bool search = handles.get<winlayer::SearchObject>(object) != nullptr;
    const auto removed = search ? nullptr : handles.remove(object);
    const DWORD error = removed == nullptr ? ERROR_INVALID_HANDLE : settle(*removed);
    if (planned != 0 || error != 0) {
        return winlayer::failed(planned != 0 ? planned : error);
    }
    return TRUE;
}

// The copy refers to the same object, including its position, and has the same access rights.
BOOL WINAPI DuplicateHandle(HANDLE sourceProcess, HANDLE source, HANDLE targetProcess, LPHANDLE target,
                            DWORD /*access*/, BOOL /*inherit*/, DWORD options) try {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    winlayer::HandleTable& handles = winlayer::HandleTable::current();
    const auto object = handles.find(source);
    const bool here =
        sourceProcess == winlayer::currentProcess() && targetProcess == winlayer::currentProcess();
    const bool search = std::dynamic_pointer_cast<winlayer::SearchObject>(object) != nullptr;
    if (!here || object == nullptr || search) {
        return winlayer::failed(ERROR_INVALID_HANDLE);
    }
    if ((options & DUPLICATE_SAME_ACCESS) == 0 || target == nullptr) {
        return winlayer::failed(target == nullptr ? ERROR_INVALID_PARAMETER : ERROR_NOT_SUPPORTED);
    }
    *target = handles.add(object);
    if (*target == nullptr) {
        return winlayer::failed(ERROR_TOO_MANY_OPEN_FILES);
    }
    return TRUE;
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(FALSE);
}
