#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "winlayer/include/minwindef.h"

namespace winlayer {

// The contents of a shortcut file (.lnk): a header, the target as a list of shell items and as a path, texts,
// and data blocks.
struct ShellLinkFile {
    enum Text { description, relativePath, workingDirectory, arguments, icon, textCount };

    DWORD flags = 0;  // SLDF_...; those of the parts are derived from the members when writing
    // Of the target when the link was created; times as in FILETIME.
    DWORD attributes = 0;
    std::uint64_t created = 0;
    std::uint64_t accessed = 0;
    std::uint64_t written = 0;
    DWORD size = 0;

    DWORD iconIndex = 0;
    DWORD showCommand = 1;  // SW_SHOWNORMAL
    WORD hotKey = 0;
    std::vector<BYTE> items;  // the item list, interpreted only by the shell; empty for none
    std::u16string path;      // on a drive or, with two leading backslashes, on the network
    std::array<std::optional<std::u16string>, textCount> texts;
    std::vector<std::vector<BYTE>> blocks;  // each starts with its size and signature

    friend bool operator==(const ShellLinkFile&, const ShellLinkFile&) = default;
};

// Nothing for bytes that are not a complete shortcut file. Non-Unicode texts are in the code page.
std::optional<ShellLinkFile> parseShellLink(std::span<const BYTE> bytes, UINT codePage);
// Nothing if the code page lacks a character of the path, a text or the items exceed the format's limit
// (65,535 units or bytes), or a block is malformed.
std::optional<std::vector<BYTE>> shellLinkBytes(const ShellLinkFile& link, UINT codePage);

// The signature of a data block; nothing if its size field does not match.
std::optional<DWORD> blockSignature(std::span<const BYTE> block);

}  // namespace winlayer
