#include "winlayer/files/file_transfer.h"

#include "winlayer/base/handle_table.h"
#include "winlayer/kernel/event.h"

namespace winlayer {

namespace {

// The lowest bit of the event handle is a flag for completion ports, not part of the handle.
std::shared_ptr<EventObject> eventOf(const OVERLAPPED& overlapped) {
    const auto value = reinterpret_cast<std::uintptr_t>(overlapped.hEvent) & ~std::uintptr_t{1};
    return HandleTable::current().get<EventObject>(reinterpret_cast<HANDLE>(value));
}

}  // namespace

std::shared_ptr<FileObject> fileWith(HANDLE handle, DWORD access) {
    auto file = HandleTable::current().get<FileObject>(handle);
    if (file == nullptr) {
        SetLastError(ERROR_INVALID_HANDLE);
    } else if ((file->access & access) != access) {
        SetLastError(ERROR_ACCESS_DENIED);
        file = nullptr;
    }
    return file;
}

void beginOverlapped(OVERLAPPED& overlapped) {
    if (const auto event = eventOf(overlapped)) {
        event->reset();
    }
}

void endOverlapped(OVERLAPPED& overlapped, Transfer transfer) {
    overlapped.Internal = transfer.error;
    overlapped.InternalHigh = transfer.count;
    if (const auto event = eventOf(overlapped)) {
        event->set();
    }
}

}  // namespace winlayer
