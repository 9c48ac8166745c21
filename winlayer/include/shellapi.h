#pragma once
#include "minwindef.h"

// Results of ShellExecuteA on failure, in place of a value above 32; also ERROR_FILE_NOT_FOUND,
// ERROR_PATH_NOT_FOUND and ERROR_BAD_FORMAT.
inline constexpr int SE_ERR_FNF = 2;
inline constexpr int SE_ERR_PNF = 3;
inline constexpr int SE_ERR_ACCESSDENIED = 5;
inline constexpr int SE_ERR_OOM = 8;
inline constexpr int SE_ERR_NOASSOC = 31;

// Opens a program, a document or a web address. Searches for a program without a folder in the given
// directory, the current one, the system and the Windows directory; ".exe" may be omitted.
HINSTANCE WINAPI ShellExecuteA(HWND window, LPCSTR operation, LPCSTR file, LPCSTR parameters,
                               LPCSTR directory, int show);
