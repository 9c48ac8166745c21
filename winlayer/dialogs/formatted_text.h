#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "winlayer/include/windows.h"

namespace winlayer {

struct TextFormat {
    bool bold = false;
    bool italic = false;
    bool underline = false;
    int halfPoints = 24;
    std::string face;  // ANSI; empty: the control's own font

    friend bool operator==(const TextFormat&, const TextFormat&) = default;
};

enum class TextAlignment { Left, Centre, Right };

struct ParagraphFormat {
    bool bullet = false;
    int leftIndent = 0;   // twips: twentieths of a point
    int firstIndent = 0;  // of the first line, beside leftIndent
    int spaceBefore = 0;
    int spaceAfter = 0;  // added to the next paragraph's spaceBefore
    TextAlignment alignment = TextAlignment::Left;

    friend bool operator==(const ParagraphFormat&, const ParagraphFormat&) = default;
};

// From `start`, a place in the text, to the next one's.
struct TextRun {
    std::size_t start = 0;
    TextFormat format;
};
struct TextParagraph {
    std::size_t start = 0;
    ParagraphFormat format;
};

// Formatted text. Paragraphs but the last end with "\r\n", which is part of the text; bullets are not.
struct RichText {
    std::string text;  // ANSI
    std::vector<TextRun> runs;
    std::vector<TextParagraph> paragraphs;
};

RichText plainText(std::string text);

// Reads RTF: characters (plain, \'xx, \u), fonts and sizes, bold, italic, underlined, paragraphs with
// indents, spaces, alignment and bullets (\pn). What it does not know is left out, as RTF asks for.
// Characters beyond the code page become "?". None when the bytes are not RTF or end within a group.
std::optional<RichText> readRtf(std::string_view rtf, UINT codePage);

}  // namespace winlayer
