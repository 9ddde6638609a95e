#include "ctl/Watch.h"

#include "ctl/RemoteInterface.h"
#include "ctl/Rendering.h"
#include "ctl/RunningProgram.h"
#include "ctl/StandardStreams.h"
#include "ctl/Table.h"

#include <QJsonDocument>
#include <QTime>

namespace harbrix {
namespace {

QString timeOfDay() {
    return QTime::currentTime().toString(QStringLiteral("HH:mm:ss"));
}

} // namespace

Watch::Watch(const RunningProgram& program, Form form) : m_program(program), m_form(form) {}

bool Watch::begin() {
    QDBusConnection bus = m_program.connection();
    const QString service = QLatin1String(remote::service);
    const QString path = QLatin1String(remote::path);
    const QString interface = QLatin1String(remote::interface);
    m_program.exitWhenGone(this);
    return bus.connect(service, path, interface, QStringLiteral("ShareChanged"), this,
                       SLOT(shareChanged(QString))) &&
           bus.connect(service, path, interface, QStringLiteral("ShareRemoved"), this,
                       SLOT(shareRemoved(QString)));
}

void Watch::printPresent(const QString& statusJson) const {
    const auto status = QJsonDocument::fromJson(statusJson.toUtf8()).object();
    for (const QJsonValue& share : status.value("shares").toArray())
        shareChanged(
            QString::fromUtf8(QJsonDocument(share.toObject()).toJson(QJsonDocument::Compact)));
}

void Watch::shareChanged(const QString& shareJson) const {
    if (m_form == Form::Json)
        print(shareJson + QLatin1Char('\n'));
    else
        print(renderChange(timeOfDay(), QJsonDocument::fromJson(shareJson.toUtf8()).object()));
}

void Watch::shareRemoved(const QString& id) const {
    if (m_form == Form::Json)
        print(QStringLiteral("{\"id\":\"%1\",\"removed\":true}\n").arg(id));
    else
        print(QStringLiteral("%1  %2  removed\n").arg(timeOfDay(), visible(id)));
}

} // namespace harbrix
