#pragma once

#include "ui/Environment.h"

#include <QObject>
#include <QPointer>
#include <QUrl>

#include <optional>

class QWidget;

namespace harbrix {

class PreviewPanel;

/// Puts the file of a browser window before the preview panel. Main thread.
class QuickLookCoordinator : public QObject {
    Q_OBJECT

public:
    /// The panel stands before `window` and goes with it.
    QuickLookCoordinator(QWidget& window, const Environment& environment);

    void preview(const QUrl& url);

    [[nodiscard]] const std::optional<QUrl>& previewURL() const { return m_previewURL; }
    /// True from the first preview on.
    [[nodiscard]] bool isPresenting() const { return m_isPresenting; }
    [[nodiscard]] PreviewPanel* panel() const;

    // What the panel asks for.
    [[nodiscard]] int numberOfPreviewItems() const { return m_previewURL ? 1 : 0; }
    [[nodiscard]] std::optional<QUrl> previewItem([[maybe_unused]] int index) const {
        return m_previewURL;
    }

private:
    QWidget& m_window;
    Environment m_environment;
    std::optional<QUrl> m_previewURL;
    bool m_isPresenting = false;
    QPointer<PreviewPanel> m_panel;
};

} // namespace harbrix
