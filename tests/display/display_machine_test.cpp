// The wizard in windows that Qt draws in memory: samples of what is seen, and the user's input on its way
// from Qt to the page. Built without Qt there is nothing to look at.
#include <gtest/gtest.h>

#if __has_include(<QApplication>)

#include <QAbstractButton>
#include <QApplication>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <optional>

#include "host/frame/component.h"
#include "host/frame/text.h"
#include "host/frame/wizard_frame.h"
#include "host/suite.h"
#include "winlayer/display/display.h"
#include "winlayer/machine.h"

namespace {

using namespace host;
using winlayer::Machine;

constexpr int heading = 1020;
constexpr int picturePlace = 1014;
constexpr int startProduct = 1011;
constexpr int makeDisk = 1012;
constexpr int buyProduct = 1013;
constexpr QRgb face = 0xFFD4D0C8;

class Display : public testing::Test {
protected:
    Display() : display_(openDisplay()), support_(suiteFolder() + "qxdlgsup.dll", ExitCode::failure) {
        frame.emplace(GetModuleHandleA(nullptr), events_);
        component_.emplace(suiteFolder() + "QXCMendwell.dll");
        component_->create(frame->window());
        frame->show();
        frame->press(Button::next);
        settle();
    }
    ~Display() override {
        component_.reset();
        frame.reset();
        Machine::current().windows.setPeer(nullptr);
    }

    static std::unique_ptr<winlayer::Peer> openDisplay() {
        std::string reason;
        auto display = winlayer::openDisplay(winlayer::DisplayKind::Memory, reason);
        if (!display) throw Failure(ExitCode::noDisplay, reason);
        Machine::current().windows.setPeer(display.get());
        return display;
    }

    void settle() { frame->dispatchWaiting(); }
    // The widget of the frame, or of a window with that title.
    static QWidget* window(const char* title = "Kelvaro Velmorcenter") {
        for (QWidget* each : QApplication::topLevelWidgets()) {
            if (each->isVisible() && each->windowTitle() == title) return each;
        }
        return nullptr;
    }
    HWND control(int id) const { return GetDlgItem(frame->page(), id); }
    bool checked(int id) const { return SendMessageA(control(id), BM_GETCHECK, 0, 0) == BST_CHECKED; }
    QRect place(int id) const {
        RECT rectangle{};
        GetWindowRect(control(id), &rectangle);
        MapWindowPoints(nullptr, frame->window(), reinterpret_cast<POINT*>(&rectangle), 2);
        return {QPoint(rectangle.left, rectangle.top), QPoint(rectangle.right - 1, rectangle.bottom - 1)};
    }
    QImage seen() {
        settle();
        return window()->grab().toImage();
    }

    void click(QPoint point) {
        QWidget* const target = window()->childAt(point);
        ASSERT_NE(target, nullptr);
        const QPointF inside = target->mapFrom(window(), point);
        const QPointF onScreen = window()->mapToGlobal(QPointF(point));
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            const auto held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
            QMouseEvent event(type, inside, onScreen, Qt::LeftButton, held, Qt::NoModifier);
            QApplication::sendEvent(target, &event);
        }
        settle();
    }
    static void type(QWidget* target, int key, Qt::KeyboardModifiers held, const QString& text) {
        for (const auto each : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(each, key, held, text);
            QApplication::sendEvent(target, &event);
        }
    }
    void key(int key, Qt::KeyboardModifiers held = Qt::NoModifier, const QString& text = {}) {
        type(window(), key, held, text);
        settle();
    }

private:
    FrameEvents events_;
    std::unique_ptr<winlayer::Peer> display_;
    LoadedModule support_;

protected:
    std::optional<WizardFrame> frame;

private:
    std::optional<Component> component_;
};

int distance(QRgb a, QRgb b) {
    return std::max(
        {std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
}

// Of a picture that a device context can show.
class Source {
public:
    Source()
        : context_(CreateCompatibleDC(nullptr)), bitmap_(load()), before_(SelectObject(context_, bitmap_)) {}
    ~Source() {
        SelectObject(context_, before_);
        DeleteObject(bitmap_);
        DeleteDC(context_);
    }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;
    QRgb at(int x, int y) const {
        const COLORREF color = GetPixel(context_, x, y);
        return qRgb(color & 0xFF, color >> 8 & 0xFF, color >> 16 & 0xFF);
    }

private:
    static HBITMAP load() {
        return LoadBitmapA(GetModuleHandleA((suiteFolder() + "QXCMendwell.dll").c_str()),
                           MAKEINTRESOURCEA(105));
    }
    HDC context_;
    HBITMAP bitmap_;
    HGDIOBJ before_;
};

TEST_F(Display, ThePictureIsScaledAndCentred) {
    window()->resize(50, 50);  // as small as it goes
    const QImage image = seen();
    const QRect room = place(picturePlace);
    constexpr double across = 336, down = 161;
    const double scale = std::min(room.width() / across, room.height() / down);
    ASSERT_LT(scale, 1) << "it must be made smaller here";
    const QSize size(static_cast<int>(across * scale), static_cast<int>(down * scale));
    const QRect picture(room.left() + (room.width() - size.width()) / 2,
                        room.top() + (room.height() - size.height()) / 2, size.width(), size.height());
    const int middle = picture.center().y();
    EXPECT_EQ(image.pixel(picture.left() - 2, middle), face);
    EXPECT_EQ(image.pixel(picture.right() + 2, middle), face);
    EXPECT_NE(image.pixel(picture.left() + 1, middle), face);
    EXPECT_NE(image.pixel(picture.right() - 1, middle), face);
    const Source source;
    for (const auto& [x, y] : {std::pair{0.1, 0.1}, {0.9, 0.1}, {0.05, 0.9}, {0.9, 0.6}, {0.3, 0.55}}) {
        const QRgb drawn = image.pixel(picture.left() + static_cast<int>(x * size.width()),
                                       picture.top() + static_cast<int>(y * size.height()));
        const QRgb wanted = source.at(static_cast<int>(x * across), static_cast<int>(y * down));
        EXPECT_LE(distance(drawn, wanted), 48) << x << ' ' << y;
    }
}

TEST_F(Display, OneRadioButtonHasADot) {
    const auto dots = [this] {
        const QImage image = seen();
        std::string found;
        for (const int id : {startProduct, makeDisk, buyProduct}) {
            const QRect radio = place(id);
            found += qGray(image.pixel(radio.left() + 6, radio.center().y())) < 64 ? 'x' : '.';
        }
        return found;
    };
    EXPECT_EQ(dots(), "x..");
    SendMessageA(control(makeDisk), BM_CLICK, 0, 0);
    EXPECT_EQ(dots(), ".x.");
}

// An umlaut is its letter with something on top; a missing character would be a box or nothing.
TEST_F(Display, UmlautsAreDrawn) {
    const auto rows = [this](const char* text) {
        SetWindowTextA(control(heading), text);
        const QRect label = place(heading);
        const QImage image = seen().copy(label);
        std::vector<int> dark(static_cast<std::size_t>(image.height()));
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                dark[static_cast<std::size_t>(y)] += qGray(image.pixel(x, y)) < 128 ? 1 : 0;
            }
        }
        return dark;
    };
    const std::vector<int> plain = rows("uuuuu");
    const std::vector<int> umlauts = rows("\xFC\xFC\xFC\xFC\xFC");
    const auto top = static_cast<std::size_t>(
        std::find_if(plain.begin(), plain.end(), [](int count) { return count > 0; }) - plain.begin());
    ASSERT_LT(top, plain.size()) << "nothing was drawn";
    EXPECT_GT(std::count_if(umlauts.begin(), umlauts.begin() + static_cast<std::ptrdiff_t>(top),
                            [](int count) { return count > 0; }),
              0);
    EXPECT_TRUE(std::equal(plain.begin() + static_cast<std::ptrdiff_t>(top), plain.end(),
                           umlauts.begin() + static_cast<std::ptrdiff_t>(top)));
}

TEST_F(Display, TheMouseReachesThePageAndTheButtons) {
    click(place(buyProduct).topLeft() + QPoint(30, 5));
    EXPECT_TRUE(checked(buyProduct));
    EXPECT_EQ(GetFocus(), control(buyProduct));
    const auto buttons = window()->findChildren<QPushButton*>();
    const auto back = std::find_if(buttons.begin(), buttons.end(),
                                   [](const QPushButton* each) { return each->text().contains("Zurück"); });
    ASSERT_NE(back, buttons.end());
    const HWND options = frame->page();
    EXPECT_FALSE((*back)->isDefault());
    QMouseEvent down(QEvent::MouseButtonPress, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(*back, &down);
    settle();
    EXPECT_TRUE((*back)->isDefault()) << "Enter would press what has the focus";
    EXPECT_TRUE((*back)->isDown());
    click((*back)->geometry().center());
    EXPECT_NE(frame->page(), options);
}

TEST_F(Display, TheKeyboardReachesThePageAndTheButtons) {
    key(Qt::Key_Down);
    EXPECT_TRUE(checked(makeDisk));
    key(Qt::Key_K, Qt::AltModifier, "k");
    EXPECT_TRUE(checked(buyProduct));
    key(Qt::Key_Up);
    EXPECT_TRUE(checked(makeDisk));
    EXPECT_EQ(QApplication::focusWidget() ? QApplication::focusWidget()->metaObject()->className() : "none",
              std::string("QRadioButton"))
        << "assistive programs follow it";
    const HWND options = frame->page();
    key(Qt::Key_Return);
    EXPECT_NE(frame->page(), options);
    key(Qt::Key_Escape);
    EXPECT_TRUE(frame->left());
}

TEST_F(Display, AMessageBoxHasRoomForItsTextAndKeepsTheUserFromTheFrame) {
    const std::string text =
        "Vergewissern Sie sich, dass in Laufwerk A: eine Diskette eingelegt ist und der "
        "Schreibschutz entfernt ist.\n\nKlicken Sie auf 'OK', um fortzufahren.";
    bool looked = false;
    QTimer::singleShot(0, [&] {
        looked = true;
        QWidget* const box = window("Hinweis");
        ASSERT_NE(box, nullptr);
        EXPECT_FALSE(IsWindowEnabled(frame->window()));
        for (const QLabel* label : box->findChildren<QLabel*>()) {
            EXPECT_LE(label->heightForWidth(label->width()), label->height()) << qPrintable(label->text());
        }
        for (const QPushButton* button : box->findChildren<QPushButton*>()) {
            EXPECT_EQ(button->isDefault(), button->text() == "OK");
        }
        window()->activateWindow();
        QApplication::processEvents();
        EXPECT_TRUE(box->isActiveWindow()) << "it stays in front of what it disables";
        type(box, Qt::Key_Escape, Qt::NoModifier, {});
    });
    EXPECT_EQ(MessageBoxA(frame->window(), text.c_str(), "Hinweis", MB_OKCANCEL | MB_ICONEXCLAMATION),
              IDCANCEL);
    EXPECT_TRUE(looked);
    EXPECT_TRUE(IsWindowEnabled(frame->window()));
}

TEST_F(Display, TheWindowIsSizedAndClosedAsTheUserWishes) {
    window()->resize(50, 50);
    settle();
    const QSize least = window()->size();
    EXPECT_GT(least.height(), 50);
    const int hint = place(1018).bottom();
    window()->resize(least + QSize(80, 60));
    settle();
    EXPECT_EQ(place(1018).bottom(), hint + 60);
    window()->resize(least);
    settle();
    EXPECT_EQ(place(1018).bottom(), hint);
    window()->close();
    settle();
    EXPECT_TRUE(frame->left()) << "closing is Cancel";
    EXPECT_TRUE(window()->isVisible()) << "and it is the program that takes the window away";
}

}  // namespace

#else

#include "support/outside_tools.h"

TEST(Display, ShowsTheWizard) {
    if (toolsAreRequired()) FAIL() << "Qt is not installed";
    GTEST_SKIP() << "Qt is not installed";
}

#endif
