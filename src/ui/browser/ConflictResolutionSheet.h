#pragma once

#include "files/FileConflict.h"

#include <QDialog>

class QPushButton;

namespace harbrix {

/// Asks what becomes of an upload whose name is taken. Closing it by other means than its buttons
/// skips the file.
class ConflictResolutionSheet : public QDialog {
    Q_OBJECT

public:
    ConflictResolutionSheet(const FileConflict& conflict, QWidget* parent);

signals:
    void resolved(harbrix::ConflictResolution resolution);

private:
    [[nodiscard]] QPushButton* makeButton(const char* name, const QString& title,
                                          ConflictResolution resolution);

    ConflictResolution m_resolution = ConflictResolution::skip;
};

} // namespace harbrix
