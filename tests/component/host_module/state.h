#pragma once
#include <string>

#include "component/host_objects.h"
#include "test_host.h"

TestHost& state();
void note(const std::string& line);
// Makes an object of a class; E_NOINTERFACE for a pair that is none.
HRESULT makeObject(const GUID& classId, const GUID& interfaceId, void** object);
