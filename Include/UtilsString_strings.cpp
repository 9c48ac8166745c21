#include <limits>

#include "UtilsString.h"

namespace UTILS {

void UtilsString::CheckStringIndex(DWORD index) const {
    if (index >= GetNumberOfStrings()) {
        ThrowOutOfRange(FailureDetail(index, GetNumberOfStrings()), header::string);
    }
}

const UtilsString& UtilsString::AddString(const TextArgument& text) {
    TableSize(GetNumberOfStrings() + 1);
    AddBuffer(text.Text(), text.Length());
    return *this;
}

const UtilsString& UtilsString::SetCurrentString(DWORD index) {
    CheckStringIndex(index);
    current_ = index;
    return *this;
}

const UtilsString& UtilsString::RemoveString() {
    return RemoveString(current_);
}

const UtilsString& UtilsString::RemoveString(DWORD index) {
    if (index >= GetNumberOfStrings()) {
        ThrowOutOfRange(index, header::string);
    }
    // The index moves first, so that it is never beyond the shrinking table.
    if (current_ != 0 && current_ + 1 == GetNumberOfStrings()) {
        --current_;
    }
    RemoveBuffer(static_cast<int>(index));
    return *this;
}

const char* UtilsString::GetStringNumber(DWORD index) const {
    CheckStringIndex(index);
    return Buffer(static_cast<int>(index)).c_str();
}

const UtilsString& UtilsString::SplitData(const UtilsString& source, const TextArgument& delimiter,
                                          int flag) {
    // Source and delimiter may be this object's own strings, which change below.
    UtilsString text(source);
    const UtilsString cut(delimiter, 1);
    DWORD written = flag != 0 ? GetNumberOfStrings() : 0;
    // A text without delimiter has no fields here; otherwise the fast parser finds the same ones.
    if (text.Search(cut) != not_found) {
        UtilsString field;
        for (int found = text.ParseFirstStringFast(cut, field); found == 1;
             found = text.ParseNextStringFast(cut, field)) {
            if (field.length() != 0) {
                PutString(written++, field.c_str(), field.length());
            }
        }
    }
    current_ = std::min(current_, std::max<DWORD>(written, 1) - 1);
    if (written == 0) {
        Buffer(0).Erase();
    }
    SetBufferCount(static_cast<int>(written));
    return *this;
}

const UtilsString& UtilsString::SplitData(const TextArgument& delimiter, int flag) {
    return SplitData(*this, delimiter, flag);
}

void UtilsString::PutString(DWORD index, const char* text, DWORD length) {
    if (index < GetNumberOfStrings()) {
        Buffer(static_cast<int>(index)).Assign(text, length);
    } else {
        AddBuffer(text, length);
    }
}

}  // namespace UTILS
