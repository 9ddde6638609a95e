#include "ui/browser/SavePanel.h"

#include <QFileInfo>
#include <QStandardPaths>

namespace harbrix {

SavePanel::SavePanel(QWidget* parent) : QFileDialog(parent) {
    setObjectName(QStringLiteral("savePanel"));
    setAttribute(Qt::WA_DeleteOnClose);
    setAcceptMode(AcceptSave);
    setFileMode(AnyFile);
    // The desktop's own dialog could not be made to take an existing directory.
    setOptions(DontUseNativeDialog | DontConfirmOverwrite);
    setDirectory(QStandardPaths::writableLocation(QStandardPaths::HomeLocation));
    selectFile(QStringLiteral("Downloads"));
}

void SavePanel::accept() {
    const QStringList files = selectedFiles();
    if (files.isEmpty() || files.constFirst().isEmpty())
        return;
    const QString place = files.constFirst();
    done(Accepted);
    emit chosen(QUrl::fromLocalFile(place));
}

} // namespace harbrix
