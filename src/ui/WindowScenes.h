#pragma once

#include "ui/Environment.h"

#include <QObject>
#include <QString>

#include <map>

class QWidget;

namespace harbrix {

/// The windows of the program, looked up by their identifiers: "main", "file-browser", "about" and
/// "settings".
/// Each is made when it is first opened; closing hides it, so that it keeps what its view holds.
/// Main thread.
class WindowScenes : public QObject {
    Q_OBJECT

public:
    explicit WindowScenes(const Environment& environment);
    ~WindowScenes() override;

    /// Shows the window and brings it to the front.
    void open(const QString& identifier);
    /// The window, if it was ever opened.
    [[nodiscard]] QWidget* window(const QString& identifier) const;

private:
    struct Scene;
    [[nodiscard]] static const Scene* sceneOf(const QString& identifier);
    [[nodiscard]] QWidget* make(const Scene& scene) const;
    void retranslate();

    Environment m_environment;
    std::map<QString, std::unique_ptr<QWidget>> m_windows;
};

} // namespace harbrix
