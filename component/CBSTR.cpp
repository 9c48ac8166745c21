#include "CBSTR.h"

#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "text_format.h"

struct CBSTR::Block {
    BSTR wide = nullptr;
    std::unique_ptr<char[]> narrow;
    std::atomic<LONG> refs = 1;
    HRESULT status = S_OK;

    ~Block() { ::SysFreeString(wide); }

    void SetText(const char* text);
    void MakeNarrow();
};

void CBSTR::Block::SetText(const char* text) {
    const int length = static_cast<int>(std::char_traits<char>::length(text)) + 1;
    const std::unique_ptr<OLECHAR[]> buffer(new (std::nothrow) OLECHAR[static_cast<std::size_t>(length)]());
    if (buffer != nullptr) {
        ::MultiByteToWideChar(::GetACP(), MB_PRECOMPOSED | MB_USEGLYPHCHARS, text, length, buffer.get(),
                              length);
        wide = ::SysAllocString(buffer.get());
    }
    if (wide == nullptr) {
        status = E_OUTOFMEMORY;
    }
}

void CBSTR::Block::MakeNarrow() {
    constexpr DWORD flags = WC_COMPOSITECHECK | WC_SEPCHARS;
    const int length = static_cast<int>(::SysStringLen(wide)) + 1;
    const auto convert = [&](int size) {
        narrow.reset(new (std::nothrow) char[static_cast<std::size_t>(size)]());
        return narrow == nullptr || length == 1 ||
               ::WideCharToMultiByte(::GetACP(), flags, wide, length, narrow.get(), size, nullptr, nullptr) !=
                   0;
    };
    if (!convert(length)) {
        // Double-byte characters need more bytes than there are characters.
        const int needed =
            ::WideCharToMultiByte(::GetACP(), flags, wide, length, nullptr, 0, nullptr, nullptr);
        convert(needed + 1);
    }
    if (narrow == nullptr) {
        status = E_OUTOFMEMORY;
    }
}

CBSTR CBSTR::Holding(Block* block) {
    CBSTR text;
    text.data_ = block;
    text.status_ = block == nullptr ? E_FAIL : block->status;
    return text;
}

CBSTR::CBSTR(const char* text) : data_(new (std::nothrow) Block) {
    if (data_ != nullptr) {
        if (text != nullptr) {
            data_->SetText(text);
        }
        status_ = data_->status;
    }
}

CBSTR::CBSTR(const CBSTR& other) : data_(other.data_), status_(other.status_) {
    if (data_ != nullptr) {
        ++data_->refs;
    }
}

CBSTR::CBSTR(CBSTR&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)), status_(std::exchange(other.status_, E_FAIL)) {}

CBSTR& CBSTR::operator=(CBSTR other) noexcept {
    std::swap(data_, other.data_);
    std::swap(status_, other.status_);
    return *this;
}

void CBSTR::Release() {
    if (data_ != nullptr && --data_->refs == 0) {
        delete data_;
    }
    data_ = nullptr;
    status_ = E_FAIL;
}

BSTR CBSTR::Wide() const {
    return data_ == nullptr ? nullptr : data_->wide;
}

const char* CBSTR::Narrow() {
    if (Wide() == nullptr) {
        return nullptr;
    }
    if (data_->narrow == nullptr) {
        data_->MakeNarrow();
        status_ = data_->status;
    }
    return data_->narrow.get();
}

const char* CBSTR::Text() {
    const char* text = Narrow();
    return text == nullptr ? "" : text;
}

int CBSTR::LoadString(HINSTANCE module, UINT id, int initialSize) {
    constexpr int step = 128;
    Release();
    try {
        int length = 0;
        std::vector<char> buffer;
        int size = std::max(initialSize, 1);
        // A string that fills its buffer may be truncated.
        for (;; size += step) {
            buffer.assign(static_cast<std::size_t>(size) + 1, '\0');
            length = ::LoadStringA(module, id, buffer.data(), size);
            if (length < size - 2) {
                break;
            }
        }
        *this = CBSTR(buffer.data());
        return length;
    } catch (const std::exception&) {
        status_ = E_OUTOFMEMORY;
        return 0;
    }
}

CBSTR operator+(const CBSTR& left, const CBSTR& right) {
    CBSTR joined = CBSTR::Holding(new (std::nothrow) CBSTR::Block);
    if (joined.data_ == nullptr) {
        return joined;
    }
    const UINT leftLength = ::SysStringLen(left.Wide());
    const UINT rightLength = ::SysStringLen(right.Wide());
    const auto bytes = static_cast<UINT>((leftLength + rightLength) * sizeof(OLECHAR));
    const BSTR wide = ::SysAllocStringByteLen(nullptr, bytes);
    if (wide == nullptr) {
        joined.status_ = joined.data_->status = E_OUTOFMEMORY;
        return joined;
    }
    OLECHAR* end = std::copy_n(left.Wide(), leftLength, wide);
    end = std::copy_n(right.Wide(), rightLength, end);
    *end = 0;
    joined.data_->wide = wide;
    return joined;
}

BOOL CBSTR::Format(const char* pattern, ...) {
    va_list arguments;
    va_start(arguments, pattern);
    std::string text;
    BOOL result = FALSE;
    HRESULT status = S_OK;
    try {
        result = pattern != nullptr && text_format::Fill(pattern, arguments, text) ? TRUE : FALSE;
    } catch (const std::exception&) {  // out of memory, or longer than a text can be
        text.clear();
        status = E_OUTOFMEMORY;
    }
    va_end(arguments);
    *this = CBSTR(text.c_str());
    if (status != S_OK) {
        status_ = status;
    }
    return result;
}
