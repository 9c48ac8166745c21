#pragma once
#include <windows.h>

#include <string>

namespace UTILS {

// A search for directory entries, closed by the destructor. Starts before the first entry:
//
//   DirectorySearch search("C:\\Temp\\*.*");
//   while (search.Advance()) use(search.Entry());
//   if (!search.Ended()) ...                       // GetLastError has the reason
class DirectorySearch {
public:
    explicit DirectorySearch(const std::string& pattern)
        : handle_(::FindFirstFileA(pattern.c_str(), &entry_)), error_(Opened() ? 0 : ::GetLastError()) {}
    DirectorySearch(const DirectorySearch&) = delete;
    DirectorySearch& operator=(const DirectorySearch&) = delete;
    ~DirectorySearch() {
        if (Opened()) {
            ::FindClose(handle_);
        }
    }

    // Moves to the next entry; false if there is none or the system fails.
    bool Advance() {
        if (started_ && error_ == 0 && !::FindNextFileA(handle_, &entry_)) {
            error_ = ::GetLastError();
        }
        started_ = true;
        return error_ == 0;
    }
    // Whether the last Advance failed because there is no further entry.
    bool Ended() const { return error_ == (Opened() ? ERROR_NO_MORE_FILES : ERROR_FILE_NOT_FOUND); }
    const WIN32_FIND_DATAA& Entry() const { return entry_; }

private:
    bool Opened() const { return handle_ != INVALID_HANDLE_VALUE; }

    WIN32_FIND_DATAA entry_;
    HANDLE handle_;
    DWORD error_;
    bool started_ = false;
};

}  // namespace UTILS
