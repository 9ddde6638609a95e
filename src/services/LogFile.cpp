#include "services/LogFile.h"

#include "base/Utf8.h"

#include <QFile>
#include <QFileInfo>

#include <filesystem>

namespace harbrix {

LogFile::LogFile(const QString& directory, qint64 maxSize)
    : m_path(directory + QStringLiteral("/Harbrix.log")),
      m_rotatedPath(m_path + QStringLiteral(".1")), m_maxSize(maxSize) {}

void LogFile::append(const QString& line) {
    m_queue.enqueue([this, line] { write(line); });
}

void LogFile::clear() {
    m_queue.enqueue([this] {
        QFile::remove(m_path);
        QFile::remove(m_rotatedPath);
    });
}

void LogFile::waitForWrites() {
    m_queue.wait();
}

void LogFile::write(const QString& line) const {
    const QFileInfo current(m_path);
    if (current.exists() && current.size() >= m_maxSize) {
        std::error_code ignored;
        QFile::remove(m_rotatedPath);
        std::filesystem::rename(m_path.toStdString(), m_rotatedPath.toStdString(), ignored);
    }
    const auto bytes = encodeUtf8(QString(line + QLatin1Char('\n')));
    if (!bytes)
        return;
    QFile file(m_path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
        file.write(*bytes);
}

} // namespace harbrix
