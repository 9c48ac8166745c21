#pragma once
#include "objbase.h"

// A text preceded by its length in bytes (four bytes) and followed by a zero; the length counts neither. A
// null one is an empty text. The caller that receives one frees it.
using BSTR = OLECHAR*;

// Each returns null when out of memory. A null text gives null, or with a length a text of that many
// uninitialised bytes.
BSTR WINAPI SysAllocString(const OLECHAR* text);
BSTR WINAPI SysAllocStringByteLen(LPCSTR bytes, UINT length);
void WINAPI SysFreeString(BSTR text);
// In units, without the zero.
UINT WINAPI SysStringLen(BSTR text);
