#pragma once
#include "msi.h"

// Installer packages as databases; each handle is closed with MsiCloseHandle.

#define MSIDBOPEN_READONLY nullptr

UINT WINAPI MsiOpenDatabaseA(LPCSTR package, LPCSTR mode, MSIHANDLE* database);
UINT WINAPI MsiDatabaseOpenViewA(MSIHANDLE database, LPCSTR query, MSIHANDLE* view);
UINT WINAPI MsiViewExecute(MSIHANDLE view, MSIHANDLE parameters);
// ERROR_NO_MORE_ITEMS after the last record.
UINT WINAPI MsiViewFetch(MSIHANDLE view, MSIHANDLE* record);
// Fields count from 1. *size: in the buffer's characters, out the text's without its zero.
UINT WINAPI MsiRecordGetStringA(MSIHANDLE record, UINT field, LPSTR value, LPDWORD size);
