// FormatMessageA, and LocalFree for the memory that it returns.

#include <algorithm>
#include <cstdarg>
#include <cstring>

#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/base/local_memory.h"
#include "winlayer/base/system_settings.h"
#include "winlayer/text/message_text.h"
#include "winlayer/text/system_messages.h"

namespace winlayer {
namespace {

constexpr DWORD lineWidthMask = 0xFF;

DWORD findDefinition(DWORD flags, LPCVOID source, DWORD id, DWORD language, std::string& definition) {
    if ((flags & FORMAT_MESSAGE_FROM_STRING) != 0) {
        if (source == nullptr) {
            return ERROR_INVALID_PARAMETER;
        }
        definition = static_cast<const char*>(source);
        return NO_ERROR;
    }
    return (flags & FORMAT_MESSAGE_FROM_SYSTEM) != 0
               ? systemMessage(SystemSettings::current(), id, language, definition)
               : ERROR_INVALID_PARAMETER;
}

std::vector<std::uint64_t> readArray(std::size_t count, const DWORD_PTR* array) {
    return std::vector<std::uint64_t>(array, array + count);
}

// Reads each argument with the type it was passed as. The list is consumed, as on Windows.
std::vector<std::uint64_t> readList(const std::vector<ArgumentKind>& kinds, va_list* arguments) {
    std::vector<std::uint64_t> values;
    // NOLINTBEGIN(clang-analyzer-valist.Uninitialized): the caller has started the list
    for (const ArgumentKind kind : kinds) {
        if (kind == ArgumentKind::Number) {
            values.push_back(va_arg(*arguments, std::uint32_t));
        } else if (kind == ArgumentKind::LongNumber) {
            values.push_back(va_arg(*arguments, std::uint64_t));
        } else {
            values.push_back(reinterpret_cast<std::uintptr_t>(va_arg(*arguments, void*)));
        }
    }
    // NOLINTEND(clang-analyzer-valist.Uninitialized)
    return values;
}

DWORD format(DWORD flags, const std::string& definition, va_list* arguments, std::string& text) {
    const bool inArray = (flags & FORMAT_MESSAGE_ARGUMENT_ARRAY) != 0;
    std::vector<MessagePiece> pieces;
    if (!parseMessage(definition, (flags & FORMAT_MESSAGE_IGNORE_INSERTS) != 0, pieces)) {
        return ERROR_INVALID_PARAMETER;
    }
    const MessageArguments inserts(pieces, inArray);
    std::vector<std::uint64_t> values;
    if (!inserts.kinds().empty()) {
        if (arguments == nullptr) {
            return ERROR_INVALID_PARAMETER;
        }
        values = inArray ? readArray(inserts.kinds().size(), reinterpret_cast<const DWORD_PTR*>(arguments))
                         : readList(inserts.kinds(), arguments);
    }
    text = messageText(winlayer::SystemSettings::current(), pieces, inserts, values, flags & lineWidthMask);
    return NO_ERROR;
}

// The allocated buffer is null when there is no text.
void giveAllocated(const std::string& text, DWORD size, LPSTR buffer) {
    void* block = nullptr;
    if (!text.empty()) {
        block = winlayer::LocalMemory::current().allocate(std::max<std::size_t>(text.size() + 1, size));
        std::memcpy(block, text.c_str(), text.size() + 1);
    }
    std::memcpy(buffer, &block, sizeof block);
}

}  // namespace
}  // namespace winlayer

using namespace winlayer;

DWORD WINAPI FormatMessageA(DWORD flags, LPCVOID source, DWORD messageId, DWORD languageId, LPSTR buffer,
                            DWORD size, va_list* arguments) try {
    if (denied(__func__)) {
        return 0;
    }
    const bool allocates = (flags & FORMAT_MESSAGE_ALLOCATE_BUFFER) != 0;
    if (buffer == nullptr) {
        return failed(ERROR_INVALID_PARAMETER);
    }
    std::string definition;
    std::string text;
    DWORD error = findDefinition(flags, source, messageId, languageId, definition);
    if (error == NO_ERROR) {
        error = format(flags, definition, arguments, text);
    }
    if (error != NO_ERROR) {
        text.clear();
    }
    if (allocates) {
        giveAllocated(text, size, buffer);
    } else if (error == NO_ERROR && text.size() >= size) {
        return failed(ERROR_INSUFFICIENT_BUFFER);
    } else if (error == NO_ERROR) {
        std::memcpy(buffer, text.c_str(), text.size() + 1);
    }
    return error == NO_ERROR ? static_cast<DWORD>(text.size()) : failed(error);
} catch (const std::bad_alloc&) {
    return outOfMemory(0U);
}

// Null on success, otherwise the address itself.
HLOCAL WINAPI LocalFree(HLOCAL memory) {
    entered(__func__);
    if (memory == nullptr || winlayer::LocalMemory::current().release(memory)) {
        return nullptr;
    }
    SetLastError(ERROR_INVALID_HANDLE);
    return memory;
}
