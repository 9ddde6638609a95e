#include "ui/widgets/SymbolIcon.h"

#include "services/LogManager.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

// The resource lives in a static library, from which nothing else would pull it in. The macro has
// to stand outside of any namespace, an unnamed one included.
static void loadResources() {
    Q_INIT_RESOURCE(ui);
}

namespace harbrix {

void ensureResources() {
    [[maybe_unused]] static const bool loaded = (loadResources(), true);
}

namespace {

QString fileOf(const QString& name) {
    ensureResources();
    return QStringLiteral(":/symbols/%1.svg").arg(name);
}

QPixmap render(const QString& name, const QSize& pixels, const QColor& color) {
    const QString key = QStringLiteral("symbol/%1/%2x%3/%4")
                            .arg(name)
                            .arg(pixels.width())
                            .arg(pixels.height())
                            .arg(color.rgba());
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    QSvgRenderer renderer(fileOf(name));
    if (!renderer.isValid()) {
        log(LogLevel::warning, QStringLiteral("No symbol named ") + name, LogCategory::ui);
        return {};
    }
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    pixmap = QPixmap(pixels);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    renderer.render(&painter, QRectF(QPointF(), pixels));
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), color);
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

class SymbolEngine final : public QIconEngine {
public:
    SymbolEngine(QString name, Tint tint) : m_name(std::move(name)), m_tint(tint) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const qreal ratio = painter->device()->devicePixelRatioF();
        QPixmap pixmap = render(m_name, (QSizeF(rect.size()) * ratio).toSize(), colorFor(mode));
        pixmap.setDevicePixelRatio(ratio);
        painter->drawPixmap(rect, pixmap);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        return render(m_name, size, colorFor(mode));
    }
    [[nodiscard]] QIconEngine* clone() const override { return new SymbolEngine(m_name, m_tint); }

private:
    [[nodiscard]] QColor colorFor(QIcon::Mode mode) const {
        return color(mode == QIcon::Disabled ? Tint::tertiary : m_tint, QGuiApplication::palette());
    }

    QString m_name;
    Tint m_tint;
};

} // namespace

QPixmap symbolPixmap(const QString& name, int size, const QColor& color, qreal devicePixelRatio) {
    QPixmap pixmap = render(name, (QSizeF(size, size) * devicePixelRatio).toSize(), color);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    return pixmap;
}

QIcon symbolIcon(const QString& name, Tint tint) {
    return QIcon(new SymbolEngine(name, tint));
}

QIcon applicationIcon() {
    ensureResources();
    const QString name = QStringLiteral("com.harbrix.app");
    return QIcon::fromTheme(name, QIcon(QStringLiteral(":/icons/%1.svg").arg(name)));
}

SymbolView::SymbolView(const QString& name, int size, Tint tint, QWidget* parent)
    : QWidget(parent), m_name(name), m_size(size), m_tint(tint) {
    setFixedSize(size, size);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void SymbolView::setSymbol(const QString& name, Tint tint) {
    m_name = name;
    m_tint = tint;
    update();
}

void SymbolView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.drawPixmap(0, 0,
                       symbolPixmap(m_name, m_size, color(m_tint, palette()), devicePixelRatioF()));
}

} // namespace harbrix
