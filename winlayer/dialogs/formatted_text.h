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
    int firstIndent = 0;  // of the first line, added to leftIndent
    int spaceBefore = 0;
    int spaceAfter = 0;  // added to the next paragraph's spaceBefore
    TextAlignment alignment = TextAlignment::Left;

    friend bool operator==(const ParagraphFormat&, const ParagraphFormat&) = default;
};

// A format from `start`, a position in the text, to the next run.
struct TextRun {
    std::size_t start = 0;
    TextFormat format;
};
struct TextParagraph {
    std::size_t start = 0;
    ParagraphFormat format;
};

// Formatted text. Every paragraph but the last ends with "\r\n", which is part of the text; bullets are not.
struct RichText {
    std::string text;  // ANSI
    std::vector<TextRun> runs;
    std::vector<TextParagraph> paragraphs;
};

RichText plainText(std::string text);

// Reads RTF: characters (plain, \'xx, \u), fonts and sizes, bold, italic, underline, paragraphs with indents,
// spacing, alignment and bullets (\pn). Unknown parts are skipped, as RTF requires. Characters outside the
// code page become "?". Nothing if the bytes are not RTF or end within a group.
std::optional<RichText> readRtf(std::string_view rtf, UINT codePage);

}  // namespace winlayer
