#include "winlayer/display/qt_rich_text.h"

#include <QTextCursor>
#include <QTextList>
#include <algorithm>

#include "winlayer/base/system_settings.h"
#include "winlayer/text/code_pages.h"

namespace winlayer {
namespace {

constexpr double twipsPerPixel = 15;  // 1440 per inch, at 96 pixels per inch
constexpr double bulletStep = 18;     // from the bullet to its text, in pixels

QTextCharFormat characters(const TextFormat& format) {
    QTextCharFormat shown;
    QFont font;
    if (!format.face.empty()) {
        font.setFamily(QString::fromStdString(toUtf8(SystemSettings::current(), format.face)));
    }
    font.setPixelSize(std::max(1, format.halfPoints * 96 / 144));
    font.setBold(format.bold);
    font.setItalic(format.italic);
    font.setUnderline(format.underline);
    shown.setFont(font);
    return shown;
}

// `above`: the space after the previous paragraph. Qt uses the larger of two adjoining margins, not their
// sum, so one of them gets it all.
QTextBlockFormat block(const ParagraphFormat& format, int above) {
    QTextBlockFormat shown;
    shown.setTopMargin((above + format.spaceBefore) / twipsPerPixel);
    if (format.bullet) {
        shown.setMarker(QTextBlockFormat::MarkerType::NoMarker);
        shown.setLeftMargin(bulletStep);
        shown.setTextIndent(-bulletStep);
    } else {
        shown.setLeftMargin(format.leftIndent / twipsPerPixel);
        shown.setTextIndent(format.firstIndent / twipsPerPixel);
    }
    shown.setAlignment(format.alignment == TextAlignment::Centre  ? Qt::AlignHCenter
                       : format.alignment == TextAlignment::Right ? Qt::AlignRight
                                                                  : Qt::AlignLeft);
    return shown;
}

// Inserts the paragraph's runs without its line end.
void insertRuns(QTextCursor& cursor, const RichText& text, std::size_t start, std::size_t end) {
    for (std::size_t i = 0; i < text.runs.size(); ++i) {
        const std::size_t next = i + 1 < text.runs.size() ? text.runs[i + 1].start : text.text.size();
        const std::size_t from = std::max(start, text.runs[i].start);
        const std::size_t to = std::min(end, next);
        if (from < to) {
            const std::string part = toUtf8(SystemSettings::current(), text.text.substr(from, to - from));
            cursor.insertText(QString::fromStdString(part), characters(text.runs[i].format));
        }
    }
}

}  // namespace

void showRichText(QTextEdit& widget, const RichText& text) {
    widget.clear();
    QTextCursor cursor(widget.document());
    for (std::size_t i = 0; i < text.paragraphs.size(); ++i) {
        const TextParagraph& paragraph = text.paragraphs[i];
        std::size_t end = i + 1 < text.paragraphs.size() ? text.paragraphs[i + 1].start : text.text.size();
        if (end >= paragraph.start + 2 && text.text.compare(end - 2, 2, "\r\n") == 0) {
            end -= 2;
        }
        if (i > 0) {
            cursor.insertBlock();
        }
        const int above = i > 0 ? text.paragraphs[i - 1].format.spaceAfter : 0;
        cursor.setBlockFormat(block(paragraph.format, above));
        if (paragraph.format.bullet) {
            cursor.insertText(QString(QChar(0x2022)) + QChar(0x2003));
        }
        insertRuns(cursor, text, paragraph.start, end);
    }
    widget.moveCursor(QTextCursor::Start);
}

}  // namespace winlayer
