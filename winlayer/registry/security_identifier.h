#pragma once
#include <cstddef>
#include <span>
#include <vector>

#include "winlayer/include/windows.h"

namespace winlayer {

// A binary security identifier: a revision, the number of parts, six bytes of authority (big-endian), then
// the parts, 32 bits each, little-endian.
inline constexpr BYTE identifierRevision = 1;
inline constexpr std::size_t mostIdentifierParts = 15;

std::vector<BYTE> makeIdentifier(std::span<const BYTE, 6> authority, const std::vector<DWORD>& parts);
// The identifier's size in bytes; 0 if its header is not that of an identifier.
std::size_t identifierSize(const void* identifier);

}  // namespace winlayer
