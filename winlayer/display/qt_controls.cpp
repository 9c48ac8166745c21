#include "winlayer/display/qt_controls.h"

#include <QCheckBox>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QProxyStyle>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleOptionButton>
#include <QTextEdit>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "winlayer/base/system_settings.h"
#include "winlayer/dialogs/control_button.h"
#include "winlayer/dialogs/control_progress.h"
#include "winlayer/dialogs/control_rich_edit.h"
#include "winlayer/dialogs/control_static.h"
#include "winlayer/display/qt_rich_text.h"
#include "winlayer/gdi/surface.h"
#include "winlayer/text/code_pages.h"
#include "winlayer/windows/window_system.h"

namespace winlayer {
namespace {

constexpr QRgb faceColour = 0xFFD4D0C8;  // COLOR_3DFACE of the classic desktop

// Qt's style for the classic desktop, plus the dark line around the default button, which that style lacks.
class ClassicStyle : public QProxyStyle {
public:
    ClassicStyle() : QProxyStyle("Windows") {}

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
        if (element != CE_PushButtonBevel || button == nullptr ||
            !button->features.testFlag(QStyleOptionButton::DefaultButton)) {
            QProxyStyle::drawControl(element, option, painter, widget);
            return;
        }
        QStyleOptionButton inner(*button);
        inner.rect.adjust(1, 1, -1, -1);
        inner.features = QStyleOptionButton::None;
        painter->setPen(Qt::black);
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(button->rect.adjusted(0, 0, -1, -1));
        QProxyStyle::drawControl(element, &inner, painter, widget);
    }
};

QPalette classicPalette() {
    const QColor shadow(0xFF808080);
    QPalette palette{QColor(faceColour)};
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Light, Qt::white);
    palette.setColor(QPalette::Dark, shadow);
    palette.setColor(QPalette::Shadow, QColor(0xFF404040));
    palette.setColor(QPalette::Highlight, QColor(0xFF0A246A));
    for (const auto text : {QPalette::WindowText, QPalette::ButtonText, QPalette::Text}) {
        palette.setColor(QPalette::Disabled, text, shadow);
    }
    return palette;
}

QString textOf(const Window& window) {
    return QString::fromStdString(toUtf8(SystemSettings::current(), window.text));
}

// A label's visible text: "&" marks a mnemonic, "&&" is an ampersand.
QString withoutPrefixes(const QString& text) {
    QString read;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'&' && ++i == text.size()) break;
        read += text[i];
    }
    return read;
}

// A window that is not a control: shows the pixels that its procedure has painted.
class SurfaceWidget : public QWidget {
public:
    SurfaceWidget(HWND window, QWidget* parent) : QWidget(parent), window_(window) {}

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        const auto window = Windows::current().find(window_);
        QPainter painter(this);
        painter.fillRect(rect(), QColor(faceColour));
        if (window != nullptr && window->surface != nullptr) {
            const Surface& surface = *window->surface;
            const auto* pixels = reinterpret_cast<const uchar*>(surface.pixels.data());
            painter.drawImage(0, 0, QImage(pixels, surface.width, surface.height, QImage::Format_RGB32));
        }
    }

private:
    HWND window_;
};

QWidget* makeButton(const Window& window, QWidget* parent) {
    switch (window.style & BS_TYPEMASK) {
        case BS_RADIOBUTTON:
        case BS_AUTORADIOBUTTON: {
            auto* radio = new QRadioButton(parent);
            radio->setAutoExclusive(false);  // the layer decides which button of a group is checked
            return radio;
        }
        case BS_CHECKBOX:
        case BS_AUTOCHECKBOX:
            return new QCheckBox(parent);
        default: {
            auto* button = new QPushButton(parent);
            button->setAutoDefault(false);
            return button;
        }
    }
}

Qt::Alignment alignmentOf(DWORD type) {
    const Qt::Alignment across = type == SS_CENTER  ? Qt::AlignHCenter
                                 : type == SS_RIGHT ? Qt::AlignRight
                                                    : Qt::AlignLeft;
    return across | Qt::AlignTop;
}

// The label's frame for the styles that have one.
int frameOf(const Window& window) {
    switch (window.style & SS_TYPEMASK) {
        case SS_ETCHEDHORZ:
            return QFrame::HLine | QFrame::Sunken;
        case SS_ETCHEDVERT:
            return QFrame::VLine | QFrame::Sunken;
        case SS_ETCHEDFRAME:
            return QFrame::Box | QFrame::Sunken;
        default: {
            const bool sunken = (window.exStyle & (WS_EX_STATICEDGE | WS_EX_CLIENTEDGE)) != 0;
            return sunken ? QFrame::Panel | QFrame::Sunken : QFrame::NoFrame;
        }
    }
}

QWidget* makeLabel(const Window& window, QWidget* parent) {
    const DWORD type = window.style & SS_TYPEMASK;
    auto* label = new QLabel(parent);
    label->setAlignment(alignmentOf(type));
    label->setWordWrap(type == SS_LEFT || type == SS_CENTER || type == SS_RIGHT);
    label->setTextFormat(Qt::PlainText);
    label->setIndent(0);
    label->setMargin(0);
    label->setFrameStyle(frameOf(window));
    label->setLineWidth((window.exStyle & WS_EX_CLIENTEDGE) != 0 ? 2 : 1);
    return label;
}

QWidget* makeText(QWidget* parent) {
    auto* text = new QTextEdit(parent);
    text->setReadOnly(true);
    text->setTextInteractionFlags(Qt::NoTextInteraction);
    return text;
}

QWidget* makeProgress(QWidget* parent) {
    auto* progress = new QProgressBar(parent);
    progress->setTextVisible(false);
    return progress;
}

// Removes the keyboard shortcut that Qt derives from the text: the layer handles mnemonics.
void setButtonText(QAbstractButton& button, const Window& window) {
    button.setText(textOf(window));
    button.setShortcut(QKeySequence());
}

void refreshButton(QAbstractButton& button, const Window& window) {
    setButtonText(button, window);
    const auto& control = static_cast<const ButtonControl&>(*window.control);
    button.setChecked(control.checked());
    button.setDown(control.pushed());
    if (auto* push = qobject_cast<QPushButton*>(&button)) {
        push->setDefault(control.isDefault());
    }
}

void refreshProgress(QProgressBar& progress, const Window& window) {
    const auto& control = static_cast<const ProgressControl&>(*window.control);
    progress.setRange(control.low(), control.high());
    progress.setValue(control.position());
}

// The desktop's icons for message boxes.
QIcon standardIcon(HICON icon) {
    const std::pair<LPCSTR, QStyle::StandardPixmap> icons[] = {
        {IDI_HAND, QStyle::SP_MessageBoxCritical},
        {IDI_QUESTION, QStyle::SP_MessageBoxQuestion},
        {IDI_EXCLAMATION, QStyle::SP_MessageBoxWarning},
        {IDI_ASTERISK, QStyle::SP_MessageBoxInformation},
    };
    for (const auto& [name, picture] : icons) {
        if (reinterpret_cast<LONG_PTR>(name) == reinterpret_cast<LONG_PTR>(icon)) {
            return QApplication::style()->standardIcon(picture);
        }
    }
    return {};
}

void refreshLabel(QLabel& label, const Window& window) {
    const HICON icon = static_cast<const StaticControl&>(*window.control).icon();
    if (icon != nullptr) {
        label.setPixmap(standardIcon(icon).pixmap(32, 32));
    } else {
        label.setText(window.has(SS_NOPREFIX) ? textOf(window) : withoutPrefixes(textOf(window)));
    }
}

// The parts of the desktop's window frame that the style requests.
Qt::WindowFlags windowFlags(const Window& window) {
    const std::pair<DWORD, Qt::WindowFlags> parts[] = {
        {WS_CAPTION, Qt::WindowTitleHint},
        {WS_SYSMENU, Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint},
        {WS_MINIMIZEBOX, Qt::WindowMinimizeButtonHint},
        {WS_MAXIMIZEBOX, Qt::WindowMaximizeButtonHint},
    };
    Qt::WindowFlags flags = Qt::CustomizeWindowHint | (window.owner != nullptr ? Qt::Dialog : Qt::Window);
    for (const auto& [style, part] : parts) {
        if (window.has(style)) flags |= part;
    }
    return flags;
}

// Qt's warnings do not help the user; a failure ends the program.
void reportFailures(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type == QtCriticalMsg || type == QtFatalMsg) {
        std::fprintf(stderr, "%s\n", qPrintable(text));
    }
}

void setFont(QWidget& widget, const Window& window) {
    LOGFONTA description{};
    if (window.font != nullptr && GetObjectA(window.font, sizeof description, &description) != 0) {
        widget.setFont(fontOf(description));
    }
}

}  // namespace

QtApplication::QtApplication(const char* platform)
    : application_(
          [&]() -> int& {
              if (platform != nullptr) qputenv("QT_QPA_PLATFORM", platform);
              qInstallMessageHandler(reportFailures);
              return argumentCount_;
          }(),
          arguments_) {
    QApplication::setStyle(new ClassicStyle);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setPalette(classicPalette());
    // Substitutes the dialog font by one of the same width.
    QFont::insertSubstitutions("MS Sans Serif", {"Microsoft Sans Serif", "Arial", "Liberation Sans"});
    QFont font("MS Sans Serif");
    font.setPixelSize(11);  // 8 points at 96 dots per inch
    QApplication::setFont(font);
}

QFont fontOf(const LOGFONTA& description) {
    QFont font(QString::fromLatin1(description.lfFaceName));
    font.setPixelSize(std::max(1, std::abs(description.lfHeight)));
    font.setWeight(description.lfWeight >= FW_BOLD ? QFont::Bold : QFont::Normal);
    font.setItalic(description.lfItalic != 0);
    return font;
}

QWidget* makeWidget(const Window& window, QWidget* parent) {
    const Control* control = window.control.get();
    QWidget* made = dynamic_cast<const ButtonControl*>(control) != nullptr     ? makeButton(window, parent)
                    : dynamic_cast<const StaticControl*>(control) != nullptr   ? makeLabel(window, parent)
                    : dynamic_cast<const RichEditControl*>(control) != nullptr ? makeText(parent)
                    : dynamic_cast<const ProgressControl*>(control) != nullptr
                        ? makeProgress(parent)
                        : new SurfaceWidget(window.handle, parent);
    if (!window.isChild()) {
        made->setWindowFlags(windowFlags(window));
    }
    // The layer moves the focus, not clicks or Qt's tab order; the widget still reports that it can have it.
    made->setFocusPolicy(window.has(WS_TABSTOP) ? Qt::TabFocus : Qt::NoFocus);
    return made;
}

void refreshWidget(QWidget& widget, const Window& window) {
    setFont(widget, window);
    if (auto* button = qobject_cast<QAbstractButton*>(&widget)) {
        refreshButton(*button, window);
    } else if (auto* text = qobject_cast<QTextEdit*>(&widget)) {
        showRichText(*text, static_cast<const RichEditControl&>(*window.control).content());
    } else if (auto* label = qobject_cast<QLabel*>(&widget)) {
        refreshLabel(*label, window);
    } else if (auto* progress = qobject_cast<QProgressBar*>(&widget)) {
        refreshProgress(*progress, window);
    } else if (window.parent == nullptr) {
        widget.setWindowTitle(textOf(window));
    }
}

}  // namespace winlayer
