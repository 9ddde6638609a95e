#include "ui/browser/QuickLookCoordinator.h"

#include "ui/browser/PreviewPanel.h"
#include "ui/widgets/Windows.h"

namespace harbrix {

QuickLookCoordinator::QuickLookCoordinator(QWidget& window, const Environment& environment)
    : m_window(window), m_environment(environment) {}

void QuickLookCoordinator::preview(const QUrl& url) {
    m_previewURL = url;
    if (!m_panel)
        m_panel = new PreviewPanel(m_environment, &m_window);
    m_panel->setDataSource(*this);
    bringToFront(*m_panel);
    m_isPresenting = true;
}

PreviewPanel* QuickLookCoordinator::panel() const {
    return m_panel;
}

} // namespace harbrix
