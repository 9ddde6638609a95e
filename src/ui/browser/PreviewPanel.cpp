#include "ui/browser/PreviewPanel.h"

#include "base/ByteCount.h"
#include "base/Scheduler.h"
#include "base/TimeText.h"
#include "base/Worker.h"
#include "files/FileIo.h"
#include "files/FileItem.h"
#include "files/FileUrl.h"
#include "services/LanguageManager.h"
#include "ui/browser/QuickLookCoordinator.h"
#include "ui/widgets/Spinner.h"
#include "ui/widgets/SymbolIcon.h"
#include "ui/widgets/TextLabel.h"

#include <QBuffer>
#include <QFile>
#include <QFontDatabase>
#include <QImageReader>
#include <QPainter>
#include <QPdfDocument>
#include <QPdfView>
#include <QPlainTextEdit>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <sys/stat.h>

namespace harbrix {
namespace {

constexpr QSize panelSize(720, 540);
constexpr int longestSide = 4096; // pixels that are kept of a picture
constexpr int cardSymbolSize = 72;

struct LoadedPreview {
    PreviewedFile file;
    QImage image;
};

/// Blocks. Null for what is no picture after all.
QImage readImage(const QUrl& url) {
    struct stat status {};
    auto descriptor = openForReading(nativePath(url), status);
    QFile file;
    if (!descriptor ||
        !file.open(descriptor->get(), QIODevice::ReadOnly, QFileDevice::DontCloseHandle))
        return {};
    QImageReader reader(&file);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.width() > longestSide || size.height() > longestSide)
        reader.setScaledSize(size.scaled(longestSide, longestSide, Qt::KeepAspectRatio));
    return reader.read();
}

/// Blocks.
LoadedPreview loadPreview(const QUrl& url) {
    LoadedPreview loaded{readForPreview(url), {}};
    if (loaded.file.kind != PreviewKind::Image)
        return loaded;
    loaded.image = readImage(url);
    if (loaded.image.isNull())
        loaded.file.kind = PreviewKind::Card;
    return loaded;
}

QString symbolFor(const PreviewedFile& file) {
    FileItem item;
    item.url = fileUrl('/' + file.name.toUtf8());
    item.isDirectory = file.isDirectory;
    return item.iconName();
}

} // namespace

/// A picture, as large as it fits and never larger than it is.
class PreviewPanel::Picture final : public QWidget {
public:
    void setImage(const QImage& image) {
        m_image = image;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        if (m_image.isNull())
            return;
        const QSize area = size() - QSize(2 * spacing::regular, 2 * spacing::regular);
        QSizeF shown = QSizeF(m_image.size()) / devicePixelRatioF();
        if (shown.width() > area.width() || shown.height() > area.height())
            shown.scale(area, Qt::KeepAspectRatio);
        const QPointF corner((width() - shown.width()) / 2, (height() - shown.height()) / 2);
        QPainter painter(this);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(QRectF(corner, shown), m_image);
    }

private:
    QImage m_image;
};

PreviewPanel::PreviewPanel(const Environment& environment, QWidget* parent)
    : QWidget(parent, Qt::Dialog), m_environment(environment), m_pages(new QStackedWidget),
      m_progress(buildProgress()), m_picture(new Picture), m_text(new QPlainTextEdit),
      m_document(new QPdfDocument(this)), m_documentView(new QPdfView),
      m_cardSymbol(new SymbolView(QStringLiteral("doc"), cardSymbolSize, Tint::secondary)),
      m_cardName(new TextLabel(TextRole::title3, Tint::primary)),
      m_cardDetails(new TextLabel(TextRole::body, Tint::secondary)), m_card(buildCard()) {
    setObjectName(QStringLiteral("previewPanel"));
    resize(panelSize);
    m_picture->setObjectName(QStringLiteral("previewPicture"));
    m_text->setObjectName(QStringLiteral("previewText"));
    m_text->setReadOnly(true);
    m_text->setFrameShape(QFrame::NoFrame);
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_text->document()->setDocumentMargin(spacing::regular);
    m_documentView->setObjectName(QStringLiteral("previewDocument"));
    m_documentView->setFrameShape(QFrame::NoFrame);
    m_documentView->setPageMode(QPdfView::PageMode::MultiPage);
    m_documentView->setZoomMode(QPdfView::ZoomMode::FitToWidth);
    m_documentView->setDocument(m_document);
    for (QWidget* page :
         std::initializer_list<QWidget*>{m_progress, m_picture, m_text, m_documentView, m_card})
        m_pages->addWidget(page);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_pages);
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Space})
        connect(new QShortcut(key, this), &QShortcut::activated, this, &QWidget::close);
}

PreviewPanel::~PreviewPanel() {
    forgetDocument();
}

QWidget* PreviewPanel::buildProgress() {
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("previewProgress"));
    auto* column = new QVBoxLayout(page);
    column->addWidget(new Spinner, 0, Qt::AlignCenter);
    return page;
}

QWidget* PreviewPanel::buildCard() {
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("previewCard"));
    m_cardName->setObjectName(QStringLiteral("previewName"));
    m_cardDetails->setObjectName(QStringLiteral("previewDetails"));
    auto* column = new QVBoxLayout(page);
    column->setSpacing(spacing::medium);
    column->addStretch(2);
    column->addWidget(m_cardSymbol, 0, Qt::AlignHCenter);
    for (TextLabel* label : {m_cardName, m_cardDetails}) {
        label->setAlignment(Qt::AlignCenter);
        column->addWidget(label);
    }
    column->addStretch(3);
    return page;
}

void PreviewPanel::setDataSource(const QuickLookCoordinator& source) {
    const auto item =
        source.numberOfPreviewItems() > 0 ? source.previewItem(0) : std::optional<QUrl>();
    setWindowTitle(item ? lastPathComponent(*item) : QString());
    m_pages->setCurrentWidget(m_progress);
    if (item)
        m_flows.launch(load(*item));
}

Task<void> PreviewPanel::load(QUrl url) {
    const int load = ++m_loads;
    auto loading = onWorker([url] { return loadPreview(url); });
    const auto loaded = co_await loading;
    if (load == m_loads)
        show(loaded.file, loaded.image);
}

void PreviewPanel::show(const PreviewedFile& file, const QImage& image) {
    forgetDocument();
    m_picture->setImage(image);
    m_text->clear();
    switch (file.kind) {
    case PreviewKind::Image:
        m_pages->setCurrentWidget(m_picture);
        return;
    case PreviewKind::Text:
        m_text->setPlainText(previewText(file.bytes));
        m_pages->setCurrentWidget(m_text);
        return;
    case PreviewKind::Pdf:
        if (showDocument(file))
            return;
        break;
    case PreviewKind::Card:
        break;
    }
    showCard(file);
}

bool PreviewPanel::showDocument(const PreviewedFile& file) {
    m_documentBytes = std::make_unique<QBuffer>();
    m_documentBytes->setData(file.bytes);
    m_documentBytes->open(QIODevice::ReadOnly);
    m_document->load(m_documentBytes.get());
    // One that wants a password, or is broken, has no pages to show.
    if (m_document->status() != QPdfDocument::Status::Ready || m_document->pageCount() == 0) {
        forgetDocument();
        return false;
    }
    m_pages->setCurrentWidget(m_documentView);
    return true;
}

// The document reads from the bytes until it is closed.
void PreviewPanel::forgetDocument() {
    m_document->close();
    m_documentBytes.reset();
}

void PreviewPanel::showCard(const PreviewedFile& file) {
    m_cardSymbol->setSymbol(symbolFor(file), Tint::secondary);
    m_cardName->setText(file.name);
    const QLocale& locale = m_environment.languageManager.locale();
    QStringList details{file.typeName};
    if (file.size >= 0)
        details << byteCountText(file.size, locale);
    if (file.modificationDate.isValid())
        details << RelativeDateText(RelativeDateText::Style::ShortNumeric, locale)(
            file.modificationDate, m_environment.files.scheduler.wallClock());
    details.removeAll(QString());
    m_cardDetails->setText(details.join(QStringLiteral("\n")));
    m_pages->setCurrentWidget(m_card);
}

} // namespace harbrix
