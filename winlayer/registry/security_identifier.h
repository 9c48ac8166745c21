#pragma once
#include <cstddef>
#include <span>
#include <vector>

#include "winlayer/include/windows.h"

namespace winlayer {

// A binary security identifier: a revision, the number of its parts, six bytes of authority (highest first),
// then the parts, 32 bits each, lowest byte first.
inline constexpr BYTE identifierRevision = 1;
inline constexpr std::size_t mostIdentifierParts = 15;

std::vector<BYTE> makeIdentifier(std::span<const BYTE, 6> authority, const std::vector<DWORD>& parts);
// Bytes of the identifier at this address; 0 when its head is not that of an identifier.
std::size_t identifierSize(const void* identifier);

}  // namespace winlayer
