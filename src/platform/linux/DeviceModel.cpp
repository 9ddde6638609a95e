#include "platform/DeviceModel.h"

#include "platform/AtomicFile.h"

namespace harbrix {

QString deviceModel() {
    const auto name = readFile(QStringLiteral("/sys/class/dmi/id/product_name"));
    const QString model = name ? QString::fromUtf8(*name).trimmed() : QString();
    return model.isEmpty() ? QStringLiteral("unknown") : model;
}

} // namespace harbrix
