#pragma once

#include <QColor>
#include <QFont>
#include <QLocale>
#include <QObject>
#include <QPalette>

class QApplication;
class QDBusConnection;
class QDBusVariant;

namespace harbrix {

enum class ColorScheme { light, dark };

/// The colours by what they are for. Each has a light and a dark value; those that stand for text
/// have a contrast of at least 4.5 to 1 on the surfaces of their scheme.
enum class Tint {
    primary,   ///< text
    secondary, ///< explanations, inactive symbols
    tertiary,  ///< hints, placeholders
    accent,
    onAccent, ///< text on the accent colour
    blue,
    green,
    yellow,
    orange,
    red,
    gray,
    window,
    sidebar,
    card,
    field, ///< inside of a text field
    control,
    controlHover,
    controlPressed,
    border, ///< outline of controls
    separator,
    selection
};

[[nodiscard]] QColor color(Tint tint, ColorScheme scheme);
/// The colour in the scheme that the palette is made for.
[[nodiscard]] QColor color(Tint tint, const QPalette& palette);
[[nodiscard]] ColorScheme schemeOf(const QPalette& palette);
[[nodiscard]] QPalette paletteFor(ColorScheme scheme);

/// The type scale.
enum class TextRole { largeTitle, title2, title3, headline, body, callout, caption, caption2 };

/// The font of a role, relative to the application's font.
[[nodiscard]] QFont fontFor(TextRole role);
/// The height of one line in a role, device-independent pixels.
[[nodiscard]] int lineHeight(TextRole role);

/// The grid that margins and gaps stand on, in device-independent pixels.
namespace spacing {
inline constexpr int hair = 2, tight = 4, small = 8, medium = 12, regular = 16, large = 20,
                     huge = 24;
} // namespace spacing

/// Dresses the application: style, fonts, palette, window icon. Follows the colour scheme of the
/// desktop, which the settings portal tells (org.freedesktop.portal.Settings); light without one.
/// Main thread.
class Theme : public QObject {
    Q_OBJECT

public:
    explicit Theme(QApplication& application);

    /// Puts the font for the language first among those that share a character: one and the same
    /// Han character is drawn in Chinese, Japanese or Korean form.
    void useLanguage(const QLocale& locale);
    /// Asks the portal on this bus and heeds its changes from now on.
    void followDesktop(QDBusConnection sessionBus);

    [[nodiscard]] ColorScheme colorScheme() const { return m_scheme; }
    void setColorScheme(ColorScheme scheme);

private slots:
    void onSettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    QApplication& m_application;
    QFont m_desktopFont;
    ColorScheme m_scheme = ColorScheme::light;
};

} // namespace harbrix
