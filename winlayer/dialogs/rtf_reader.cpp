#include <algorithm>
#include <charconv>
#include <map>

#include "winlayer/dialogs/formatted_text.h"
#include "winlayer/text/code_pages.h"

namespace winlayer {
namespace {

enum class Destination { Text, Fonts, Bullet, Ignored };

// State that a group inherits from its parent group.
struct GroupState {
    Destination destination = Destination::Text;
    TextFormat format;
    ParagraphFormat paragraph;
    int font = 0;
    int fallbackBytes = 1;  // characters after \u that replace it in older readers
};

class RtfReader {
public:
    RtfReader(std::string_view rtf, UINT codePage) : rtf_(rtf), codePage_(codePage) {}

    std::optional<RichText> read() {
        if (!rtf_.starts_with("{\\rtf")) {
            return std::nullopt;
        }
        do {
            step();
        } while (!groups_.empty() && at_ < rtf_.size());
        if (!groups_.empty()) {
            return std::nullopt;
        }
        dropLastEnd();
        return std::move(result_);
    }

private:
    GroupState& group() { return groups_.back(); }

    void step() {
        const char letter = rtf_[at_++];
        switch (letter) {
            case '{':
                groups_.push_back(groups_.empty() ? GroupState{} : groups_.back());
                starred_ = false;
                break;
            case '}':
                closeGroup();
                break;
            case '\\':
                control();
                break;
            case '\r':
            case '\n':
                break;
            default:
                character(letter);
                break;
        }
    }

    // A bullet in a group of its own applies to the paragraph.
    void closeGroup() {
        const bool bullet = group().destination == Destination::Bullet;
        groups_.pop_back();
        if (bullet && !groups_.empty()) {
            group().paragraph.bullet = true;
        }
    }

    void control() {
        if (at_ == rtf_.size()) {
            return;
        }
        const char first = rtf_[at_];
        const bool word = (first >= 'a' && first <= 'z') || (first >= 'A' && first <= 'Z');
        if (word) {
            controlWord();
            return;
        }
        ++at_;
        controlSymbol(first);
    }

    void controlSymbol(char symbol) {
        switch (symbol) {
            case '\'': {
                int code = 0;
                const std::string_view digits = rtf_.substr(at_, 2);
                std::from_chars(digits.data(), digits.data() + digits.size(), code, 16);
                at_ += digits.size();
                character(static_cast<char>(code));
                break;
            }
            case '*':
                starred_ = true;
                break;
            case '~':
                character('\xA0');
                break;
            case '\r':
            case '\n':
                endParagraph();
                break;
            case '\\':
            case '{':
            case '}':
                character(symbol);
                break;
            default:
                break;
        }
    }

    void controlWord() {
        const std::size_t start = at_;
        const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
        while (at_ < rtf_.size() && isLetter(rtf_[at_])) {
            ++at_;
        }
        const std::string_view word = rtf_.substr(start, at_ - start);
        std::optional<int> number;
        int value = 0;
        const auto parsed = std::from_chars(rtf_.data() + at_, rtf_.data() + rtf_.size(), value);
        if (parsed.ec != std::errc::invalid_argument) {
            number = value;  // 0 if out of range
            at_ = static_cast<std::size_t>(parsed.ptr - rtf_.data());
        }
        if (at_ < rtf_.size() && rtf_[at_] == ' ') {
            ++at_;
        }
        apply(word, number);
    }

    void apply(std::string_view word, std::optional<int> number) {
        const bool known = applyDestination(word) || applyCharacter(word, number) ||
                           applyFormat(word, number) || applyParagraph(word, number);
        // \* marks a group to be skipped if its destination is unknown.
        if (starred_ && !known) {
            group().destination = Destination::Ignored;
        }
        starred_ = false;
    }

    bool applyDestination(std::string_view word) {
        static const std::map<std::string_view, Destination> destinations = {
            {"fonttbl", Destination::Fonts},    {"pnlvlblt", Destination::Bullet},
            {"pn", Destination::Ignored},       {"pntext", Destination::Ignored},
            {"pntxtb", Destination::Ignored},   {"pntxta", Destination::Ignored},
            {"colortbl", Destination::Ignored}, {"stylesheet", Destination::Ignored},
            {"info", Destination::Ignored},     {"pict", Destination::Ignored},
            {"header", Destination::Ignored},   {"footer", Destination::Ignored},
            {"object", Destination::Ignored},
        };
        const auto found = destinations.find(word);
        if (found != destinations.end()) {
            group().destination = found->second;
        }
        return found != destinations.end();
    }

    bool applyCharacter(std::string_view word, std::optional<int> number) {
        static const std::map<std::string_view, char> named = {
            {"tab", '\t'},         {"bullet", '\x95'},    {"lquote", '\x91'}, {"rquote", '\x92'},
            {"ldblquote", '\x93'}, {"rdblquote", '\x94'}, {"endash", '\x96'}, {"emdash", '\x97'},
        };
        if (const auto found = named.find(word); found != named.end()) {
            character(found->second);
        } else if (word == "par") {
            endParagraph();
        } else if (word == "line") {
            append("\r\n");
        } else if (word == "u") {
            unicode(number.value_or(0));
        } else if (word == "uc") {
            group().fallbackBytes = std::max(0, number.value_or(1));
        } else if (word == "bin") {
            at_ += std::min(rtf_.size() - at_, static_cast<std::size_t>(std::max(0, number.value_or(0))));
        } else {
            return false;
        }
        return true;
    }

    bool applyFormat(std::string_view word, std::optional<int> number) {
        TextFormat& format = group().format;
        const bool on = number.value_or(1) != 0;
        if (word == "b") {
            format.bold = on;
        } else if (word == "i") {
            format.italic = on;
        } else if (word == "ul") {
            format.underline = on;
        } else if (word == "ulnone") {
            format.underline = false;
        } else if (word == "fs") {
            format.halfPoints = std::clamp(number.value_or(24), 1, 3276);
        } else if (word == "deff") {
            defaultFont_ = number.value_or(0);
            group().font = defaultFont_;
        } else if (word == "f") {
            group().font = number.value_or(defaultFont_);
        } else if (word == "plain") {
            format = {};
            group().font = defaultFont_;
        } else {
            return false;
        }
        return true;
    }

    bool applyParagraph(std::string_view word, std::optional<int> number) {
        ParagraphFormat& paragraph = group().paragraph;
        if (word == "pard") {
            paragraph = {};
        } else if (word == "li") {
            paragraph.leftIndent = number.value_or(0);
        } else if (word == "fi") {
            paragraph.firstIndent = number.value_or(0);
        } else if (word == "sb") {
            paragraph.spaceBefore = number.value_or(0);
        } else if (word == "sa") {
            paragraph.spaceAfter = number.value_or(0);
        } else if (word == "ql") {
            paragraph.alignment = TextAlignment::Left;
        } else if (word == "qc") {
            paragraph.alignment = TextAlignment::Centre;
        } else if (word == "qr") {
            paragraph.alignment = TextAlignment::Right;
        } else {
            return false;
        }
        return true;
    }

    // Skips the replacement characters, each a byte or \'xx; a brace or a control word ends them.
    void unicode(int number) {
        const auto unit = static_cast<char16_t>(number);
        Narrowing how;
        append(narrow(codePage_, std::u16string_view(&unit, 1), how));
        for (int i = 0; i < group().fallbackBytes && at_ < rtf_.size(); ++i) {
            if (rtf_[at_] == '{' || rtf_[at_] == '}') {
                return;
            }
            const bool byteCode = rtf_.substr(at_).starts_with("\\'");
            if (rtf_[at_] == '\\' && !byteCode) {
                return;
            }
            at_ += std::min(rtf_.size() - at_, std::size_t{byteCode ? 4U : 1U});
        }
    }

    void character(char letter) {
        if (group().destination == Destination::Fonts) {
            if (letter == ';') {
                return;
            }
            fonts_[group().font] += letter;
        } else if (group().destination == Destination::Text) {
            append({&letter, 1});
        }
    }

    void append(std::string_view text) {
        if (group().destination != Destination::Text) {
            return;
        }
        const std::size_t place = result_.text.size();
        TextFormat format = group().format;
        if (const auto font = fonts_.find(group().font); font != fonts_.end()) {
            format.face = font->second;
        }
        if (result_.runs.empty() || result_.runs.back().format != format) {
            result_.runs.push_back({place, format});
        }
        if (atParagraph_) {
            result_.paragraphs.push_back({place, {}});
            atParagraph_ = false;
        }
        result_.paragraphs.back().format = group().paragraph;
        result_.text += text;
    }

    void endParagraph() {
        append("\r\n");
        atParagraph_ = group().destination == Destination::Text || atParagraph_;
    }

    // The last paragraph needs no line end.
    void dropLastEnd() {
        if (!atParagraph_ || !result_.text.ends_with("\r\n")) {
            return;
        }
        const std::size_t size = result_.text.size() - 2;
        result_.text.resize(size);
        std::erase_if(result_.runs, [size](const TextRun& run) { return run.start >= size; });
        std::erase_if(result_.paragraphs, [size](const TextParagraph& each) { return each.start >= size; });
    }

    std::string_view rtf_;
    UINT codePage_;
    std::size_t at_ = 0;
    std::vector<GroupState> groups_;
    std::map<int, std::string> fonts_;
    int defaultFont_ = 0;
    bool starred_ = false;
    bool atParagraph_ = true;
    RichText result_;
};

}  // namespace

RichText plainText(std::string text) {
    RichText result;
    result.text = std::move(text);
    result.runs.push_back({0, {}});
    result.paragraphs.push_back({0, {}});
    for (std::size_t end = result.text.find("\r\n"); end != std::string::npos;
         end = result.text.find("\r\n", end + 2)) {
        if (end + 2 < result.text.size()) {
            result.paragraphs.push_back({end + 2, {}});
        }
    }
    return result;
}

std::optional<RichText> readRtf(std::string_view rtf, UINT codePage) {
    return RtfReader(rtf, codePage).read();
}

}  // namespace winlayer
