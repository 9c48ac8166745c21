#pragma once
#include "objbase.h"

// A text with its length in bytes in the four bytes before it and a zero behind it, both not counted in the
// length. A null one is an empty text. Who gets one frees it.
using BSTR = OLECHAR*;

// Each gives null when there is no memory. A null text makes null, or with a length a text of that many bytes
// without a content.
BSTR WINAPI SysAllocString(const OLECHAR* text);
BSTR WINAPI SysAllocStringByteLen(LPCSTR bytes, UINT length);
void WINAPI SysFreeString(BSTR text);
// In units, without the zero.
UINT WINAPI SysStringLen(BSTR text);
