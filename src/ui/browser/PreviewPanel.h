#pragma once

#include "base/TaskScope.h"
#include "files/Preview.h"
#include "ui/Environment.h"

#include <QImage>
#include <QWidget>

class QBuffer;
class QPdfDocument;
class QPdfView;
class QPlainTextEdit;
class QStackedWidget;

namespace harbrix {

class QuickLookCoordinator;
class SymbolView;
class TextLabel;

/// Shows a file without opening it: pictures, texts and documents as such, all else as a card with
/// its name, kind, size and date. Reads and decodes on a worker. Escape and the space bar close it.
class PreviewPanel : public QWidget {
    Q_OBJECT

public:
    PreviewPanel(const Environment& environment, QWidget* parent);
    ~PreviewPanel() override;

    /// Shows the first item of the source, anew each time.
    void setDataSource(const QuickLookCoordinator& source);

private:
    class Picture;

    [[nodiscard]] QWidget* buildProgress();
    [[nodiscard]] QWidget* buildCard();
    Task<void> load(QUrl url);
    void show(const PreviewedFile& file, const QImage& image);
    void showCard(const PreviewedFile& file);
    [[nodiscard]] bool showDocument(const PreviewedFile& file);
    void forgetDocument();

    Environment m_environment;
    QStackedWidget* m_pages;
    QWidget* m_progress;
    Picture* m_picture;
    QPlainTextEdit* m_text;
    std::unique_ptr<QBuffer> m_documentBytes;
    QPdfDocument* m_document;
    QPdfView* m_documentView;
    SymbolView* m_cardSymbol;
    TextLabel* m_cardName;
    TextLabel* m_cardDetails;
    QWidget* m_card;
    int m_loads = 0;
    TaskScope m_flows;
};

} // namespace harbrix
