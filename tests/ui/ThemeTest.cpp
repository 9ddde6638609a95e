#include "ui/widgets/Theme.h"

#include "PlayedPortal.h"
#include "WindowTest.h"
#include "platform/MessageBus.h"
#include "support/PrivateBus.h"

#include <QDBusMessage>
#include <QFontDatabase>

namespace harbrix {
namespace {

constexpr uint dark = 1;
constexpr uint light = 2;

class ThemeTest : public WindowTest {
protected:
    ~ThemeTest() override { theme.setColorScheme(ColorScheme::light); }

    [[nodiscard]] bool waitForScheme(ColorScheme scheme) {
        return waitUntil([&] { return theme.colorScheme() == scheme; });
    }
    [[nodiscard]] QColor paintedSidebar() {
        const QImage shot = scenes.window("main")->grab().toImage();
        return shot.pixelColor(4, shot.height() - 4);
    }

    PrivateBus bus;
    QDBusConnection desktop = BusAddress(bus.address()).connect();
    QDBusConnection program = BusAddress(bus.address()).connect();
    Theme theme{*qApp};
};

TEST_F(ThemeTest, OpenWindowsFollowTheColourSchemeOfTheDesktop) {
    PlayedPortal portal(desktop, dark);
    open();
    EXPECT_EQ(paintedSidebar(), color(Tint::sidebar, ColorScheme::light));
    theme.followDesktop(program);
    ASSERT_TRUE(waitForScheme(ColorScheme::dark));
    settle();
    EXPECT_EQ(paintedSidebar(), color(Tint::sidebar, ColorScheme::dark));

    portal.change("org.gnome.desktop.interface", "color-scheme", light);
    portal.change("org.freedesktop.appearance", "contrast", light);
    portal.change("org.freedesktop.appearance", "color-scheme", light);
    ASSERT_TRUE(waitForScheme(ColorScheme::light));
    settle();
    EXPECT_EQ(paintedSidebar(), color(Tint::sidebar, ColorScheme::light));
}

TEST_F(ThemeTest, HanCharactersAreDrawnInTheFormOfTheLanguage) {
    const QFont before = QApplication::font();
    const struct {
        const char* language;
        const char* family;
    } rows[] = {{"ja", "Noto Sans CJK JP"},
                {"zh-TW", "Noto Sans CJK TC"},
                {"ko", "Noto Sans CJK KR"},
                {"zh-Hans", "Noto Sans CJK SC"},
                {"de", "Noto Sans CJK SC"}};
    for (const auto& row : rows) {
        if (!QFontDatabase::hasFamily(row.family))
            GTEST_SKIP() << row.family << " is not installed";
        theme.useLanguage(QLocale(row.language));
        const QStringList families = QApplication::font().families();
        EXPECT_TRUE(families.contains(row.family)) << row.language;
        EXPECT_EQ(families.filter("CJK").size(), 1) << row.language;
        EXPECT_EQ(QApplication::font().pointSizeF(), before.pointSizeF());
    }
    QApplication::setFont(before);
}

TEST_F(ThemeTest, APortalThatComesLateIsHeeded) {
    theme.followDesktop(program);
    PlayedPortal portal(desktop, light);
    // The question for the first scheme is answered, with an error, before this call is.
    program.call(QDBusMessage::createMethodCall("org.freedesktop.DBus", "/", "org.freedesktop.DBus",
                                                "GetId"));
    portal.change("org.freedesktop.appearance", "color-scheme", dark);
    EXPECT_TRUE(waitForScheme(ColorScheme::dark));
}

/// The contrast of two colours as WCAG 2.1 defines it.
double contrast(const QColor& one, const QColor& other) {
    const auto luminance = [](const QColor& color) {
        const auto linear = [](double part) {
            return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
               0.0722 * linear(color.blueF());
    };
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

TEST(Tints, TextsCanBeReadOnEverySurface) {
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        for (const Tint ink : {Tint::primary, Tint::secondary, Tint::blue, Tint::green,
                               Tint::orange, Tint::red, Tint::tertiary})
            for (const Tint surface : {Tint::window, Tint::sidebar, Tint::card, Tint::selection}) {
                // Hints stand on plain surfaces only.
                if (ink == Tint::tertiary && surface == Tint::selection)
                    continue;
                EXPECT_GE(contrast(color(ink, scheme), color(surface, scheme)), 4.5)
                    << int(ink) << " on " << int(surface) << (scheme == ColorScheme::dark);
            }
        EXPECT_GE(contrast(color(Tint::onAccent, scheme), color(Tint::accent, scheme)), 4.5);
    }
}

} // namespace
} // namespace harbrix
