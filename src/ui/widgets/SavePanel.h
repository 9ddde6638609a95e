#pragma once

#include <QFileDialog>

namespace harbrix {

/// Asks for a place to save to, which need not exist yet.
class SavePanel : public QFileDialog {
    Q_OBJECT

public:
    enum class For {
        Folder, ///< an existing directory is an answer too, where a save dialog would only enter it
        TextFile ///< asks before a file is replaced
    };

    SavePanel(For what, const QString& proposedName, QWidget* parent);

signals:
    void chosen(const QUrl& place);

protected:
    void accept() override;

private:
    For m_what;
};

} // namespace harbrix
