#pragma once

#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>

namespace harbrix {

/// The object that a running program offers to the next one.
class ApplicationOnBus : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    QVariantMap platformData;
    int activations = 0;

public slots:
    void Activate(const QVariantMap& data) {
        platformData = data;
        ++activations;
    }
};

/// Plays the file viewer on the bus and the desktop's handler of file URLs.
class DesktopOnBus : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    QStringList shown;
    QList<QUrl> opened;

public slots:
    void ShowItems(const QStringList& uris, const QString&) { shown += uris; }
    void open(const QUrl& url) { opened << url; }
};

} // namespace harbrix
