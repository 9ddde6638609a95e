#include "ui/widgets/SavePanel.h"

#include <QStandardPaths>

namespace harbrix {

SavePanel::SavePanel(For what, const QString& proposedName, QWidget* parent)
    : QFileDialog(parent), m_what(what) {
    setObjectName(QStringLiteral("savePanel"));
    setAttribute(Qt::WA_DeleteOnClose);
    setAcceptMode(AcceptSave);
    setFileMode(AnyFile);
    // The desktop's own dialog could not be made to take an existing directory.
    setOption(DontUseNativeDialog);
    setOption(DontConfirmOverwrite, what == For::Folder);
    if (what == For::TextFile)
        setMimeTypeFilters({QStringLiteral("text/plain")});
    setDirectory(QStandardPaths::writableLocation(QStandardPaths::HomeLocation));
    selectFile(proposedName);
    connect(this, &QFileDialog::fileSelected, this, [this](const QString& path) {
        if (m_what == For::TextFile)
            emit chosen(QUrl::fromLocalFile(path));
    });
}

void SavePanel::accept() {
    if (m_what == For::TextFile)
        return QFileDialog::accept();
    const QStringList files = selectedFiles();
    if (files.isEmpty() || files.constFirst().isEmpty())
        return;
    const QString place = files.constFirst();
    done(Accepted);
    emit chosen(QUrl::fromLocalFile(place));
}

} // namespace harbrix
