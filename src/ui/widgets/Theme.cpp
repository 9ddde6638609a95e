#include "ui/widgets/Theme.h"

#include "services/LogManager.h"
#include "ui/widgets/FlatStyle.h"
#include "ui/widgets/SymbolIcon.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QFontDatabase>
#include <QFontMetrics>

#include <array>

namespace harbrix {
namespace {

struct Shade {
    Tint tint;
    QRgb light;
    QRgb dark;
};

constexpr auto shades = std::to_array<Shade>({
    {Tint::primary, 0xff1b1f24, 0xffeceff3},      {Tint::secondary, 0xff57606c, 0xffa7b0bc},
    {Tint::tertiary, 0xff626b77, 0xff8d97a4},     {Tint::accent, 0xff1f6bdb, 0xff2f74dd},
    {Tint::onAccent, 0xffffffff, 0xffffffff},     {Tint::blue, 0xff1a5fc6, 0xff6ea8ff},
    {Tint::green, 0xff14743a, 0xff46c272},        {Tint::yellow, 0xff9a6c00, 0xffe6b93f},
    {Tint::orange, 0xff9e4a00, 0xfff2a24e},       {Tint::red, 0xffc2222d, 0xffff7b72},
    {Tint::gray, 0xff828b97, 0xff8b95a2},         {Tint::window, 0xfff6f7f9, 0xff1d2025},
    {Tint::sidebar, 0xffeceff3, 0xff17191d},      {Tint::card, 0xffffffff, 0xff272b32},
    {Tint::field, 0xffffffff, 0xff1d2025},        {Tint::control, 0xffffffff, 0xff343942},
    {Tint::controlHover, 0xfff1f3f6, 0xff3d434d}, {Tint::controlPressed, 0xffe5e9ee, 0xff2c3139},
    {Tint::border, 0xffcfd5dd, 0xff464d58},       {Tint::separator, 0xffe2e6eb, 0xff363b44},
    {Tint::selection, 0xffd6e4fa, 0xff21385d},
});

struct Step {
    TextRole role;
    double scale;
    QFont::Weight weight;
};

constexpr auto typeScale = std::to_array<Step>({
    {TextRole::largeTitle, 1.9, QFont::DemiBold},
    {TextRole::title2, 1.4, QFont::DemiBold},
    {TextRole::title3, 1.2, QFont::Medium},
    {TextRole::headline, 1.0, QFont::DemiBold},
    {TextRole::body, 1.0, QFont::Normal},
    {TextRole::callout, 0.95, QFont::Normal},
    {TextRole::caption, 0.9, QFont::Normal},
    {TextRole::caption2, 0.85, QFont::Normal},
});

constexpr double smallestBodyPoints = 10.0;
constexpr auto portalService = "org.freedesktop.portal.Desktop";
constexpr auto portalPath = "/org/freedesktop/portal/desktop";
constexpr auto portalInterface = "org.freedesktop.portal.Settings";
constexpr auto appearanceGroup = "org.freedesktop.appearance";
constexpr auto colorSchemeKey = "color-scheme";

const char* eastAsianFamily(const QLocale& locale) {
    switch (locale.language()) {
    case QLocale::Japanese:
        return "Noto Sans CJK JP";
    case QLocale::Korean:
        return "Noto Sans CJK KR";
    case QLocale::Chinese:
        if (locale.script() == QLocale::TraditionalHanScript)
            return "Noto Sans CJK TC";
        break;
    default:
        break;
    }
    return "Noto Sans CJK SC";
}

/// The desktop's own font where there is a desktop; that of East Asia is named, as under a C locale
/// Chinese would fall back to Japanese glyph forms.
QFont applicationFont(QFont font, const QLocale& locale) {
    static const QStringList generic{QString(), QStringLiteral("Sans"),
                                     QStringLiteral("Sans Serif"), QStringLiteral("sans-serif"),
                                     QStringLiteral("Helvetica")};
    QStringList families;
    if (!generic.contains(font.family()))
        families << font.family();
    for (const char* family : {"Noto Sans", eastAsianFamily(locale), "Noto Color Emoji"})
        if (QFontDatabase::hasFamily(QString::fromLatin1(family)))
            families << QString::fromLatin1(family);
    if (!families.isEmpty())
        font.setFamilies(families);
    if (font.pointSizeF() > 0 && font.pointSizeF() < smallestBodyPoints)
        font.setPointSizeF(smallestBodyPoints);
    return font;
}

/// The portal's numbers: 0 no preference, 1 dark, 2 light. Its Read() wraps the value once more.
ColorScheme schemeOf(const QVariant& value) {
    QVariant inner = value;
    while (inner.canConvert<QDBusVariant>())
        inner = inner.value<QDBusVariant>().variant();
    return inner.toUInt() == 1 ? ColorScheme::dark : ColorScheme::light;
}

} // namespace

QColor color(Tint tint, ColorScheme scheme) {
    const Shade& shade = shades.at(static_cast<std::size_t>(tint));
    Q_ASSERT(shade.tint == tint);
    return QColor::fromRgba(scheme == ColorScheme::dark ? shade.dark : shade.light);
}

QColor color(Tint tint, const QPalette& palette) {
    return color(tint, schemeOf(palette));
}

ColorScheme schemeOf(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < 128 ? ColorScheme::dark
                                                             : ColorScheme::light;
}

QPalette paletteFor(ColorScheme scheme) {
    const auto shade = [scheme](Tint tint) { return color(tint, scheme); };
    QPalette palette(shade(Tint::control), shade(Tint::window));
    palette.setColor(QPalette::Window, shade(Tint::window));
    palette.setColor(QPalette::WindowText, shade(Tint::primary));
    palette.setColor(QPalette::Base, shade(Tint::field));
    palette.setColor(QPalette::AlternateBase, shade(Tint::controlHover));
    palette.setColor(QPalette::Text, shade(Tint::primary));
    palette.setColor(QPalette::PlaceholderText, shade(Tint::tertiary));
    palette.setColor(QPalette::Button, shade(Tint::control));
    palette.setColor(QPalette::ButtonText, shade(Tint::primary));
    palette.setColor(QPalette::BrightText, shade(Tint::red));
    palette.setColor(QPalette::Highlight, shade(Tint::accent));
    palette.setColor(QPalette::HighlightedText, shade(Tint::onAccent));
    palette.setColor(QPalette::Link, shade(Tint::blue));
    palette.setColor(QPalette::ToolTipBase, shade(Tint::card));
    palette.setColor(QPalette::ToolTipText, shade(Tint::primary));
    palette.setColor(QPalette::Mid, shade(Tint::separator));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, shade(Tint::tertiary));
    return palette;
}

QFont fontFor(TextRole role) {
    const Step& step = typeScale.at(static_cast<std::size_t>(role));
    Q_ASSERT(step.role == role);
    QFont font = QApplication::font();
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * step.scale);
    else
        font.setPixelSize(qRound(font.pixelSize() * step.scale));
    font.setWeight(step.weight);
    return font;
}

int lineHeight(TextRole role) {
    return QFontMetrics(fontFor(role)).height();
}

Theme::Theme(QApplication& application)
    : m_application(application), m_desktopFont(QApplication::font()) {
    QApplication::setStyle(new FlatStyle);
    useLanguage(QLocale());
    QApplication::setPalette(paletteFor(m_scheme));
    QApplication::setWindowIcon(applicationIcon());
}

void Theme::useLanguage(const QLocale& locale) {
    QApplication::setFont(applicationFont(m_desktopFont, locale));
}

void Theme::followDesktop(QDBusConnection sessionBus) {
    if (!sessionBus.isConnected())
        return;
    qDBusRegisterMetaType<QDBusVariant>();
    const bool heeded =
        sessionBus.connect(QLatin1String(portalService), QLatin1String(portalPath),
                           QLatin1String(portalInterface), QStringLiteral("SettingChanged"), this,
                           SLOT(onSettingChanged(QString, QString, QDBusVariant)));
    if (!heeded)
        log(LogLevel::warning, QStringLiteral("Changes of the colour scheme are not followed"),
            LogCategory::ui);

    QDBusMessage question =
        QDBusMessage::createMethodCall(QLatin1String(portalService), QLatin1String(portalPath),
                                       QLatin1String(portalInterface), QStringLiteral("Read"));
    question << QString::fromLatin1(appearanceGroup) << QString::fromLatin1(colorSchemeKey);
    auto* watcher = new QDBusPendingCallWatcher(sessionBus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusVariant> answer = *watcher;
        // No portal, or one that knows nothing of it: the scheme stays as it is.
        if (!answer.isError())
            setColorScheme(schemeOf(answer.value().variant()));
        watcher->deleteLater();
    });
}

void Theme::onSettingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    if (group == QLatin1String(appearanceGroup) && key == QLatin1String(colorSchemeKey))
        setColorScheme(schemeOf(value.variant()));
}

void Theme::setColorScheme(ColorScheme scheme) {
    if (scheme == m_scheme)
        return;
    m_scheme = scheme;
    QApplication::setPalette(paletteFor(scheme));
}

} // namespace harbrix
