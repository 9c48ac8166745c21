#include "winlayer/registry/security_identifier.h"

namespace winlayer {

constexpr std::size_t headSize = 8;

std::vector<BYTE> makeIdentifier(std::span<const BYTE, 6> authority, const std::vector<DWORD>& parts) {
    std::vector<BYTE> bytes{identifierRevision, static_cast<BYTE>(parts.size())};
    bytes.insert(bytes.end(), authority.begin(), authority.end());
    for (const DWORD part : parts) {
        for (unsigned shift = 0; shift < 32; shift += 8) {
            bytes.push_back(static_cast<BYTE>(part >> shift));
        }
    }
    return bytes;
}

std::size_t identifierSize(const void* identifier) {
    const auto* bytes = static_cast<const BYTE*>(identifier);
    if (bytes == nullptr || bytes[0] != identifierRevision || bytes[1] > mostIdentifierParts) {
        return 0;
    }
    return headSize + sizeof(DWORD) * bytes[1];
}

}  // namespace winlayer
