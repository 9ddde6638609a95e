#pragma once

#include <QFileDialog>

namespace harbrix {

/// Asks for the place that downloads go to, which need not exist yet. An existing directory is an
/// answer too, where a save dialog would only enter it.
class SavePanel : public QFileDialog {
    Q_OBJECT

public:
    explicit SavePanel(QWidget* parent);

signals:
    void chosen(const QUrl& place);

protected:
    void accept() override;
};

} // namespace harbrix
