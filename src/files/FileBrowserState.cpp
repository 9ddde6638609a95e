#include "files/FileBrowserState.h"

namespace harbrix {

void FileBrowserState::show(const NASConfig& config, const QUrl& mountPoint) {
    m_config = config;
    m_mountPoint = mountPoint;
    emit changed();
}

} // namespace harbrix
