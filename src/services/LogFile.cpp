#include "services/LogFile.h"

#include "base/Utf8.h"

#include <QFile>
#include <QFileInfo>

#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>

namespace harbrix {
namespace {

/// The nice(2) value that keeps the writing below the user's work.
constexpr int utilityPriority = 5;

void lowerPriorityOfThisThread() {
    // On Linux the nice value belongs to the thread.
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), utilityPriority);
}

} // namespace

LogFile::LogFile(const QString& directory, qint64 maxSize)
    : m_path(directory + QStringLiteral("/Harbrix.log")),
      m_rotatedPath(m_path + QStringLiteral(".1")), m_maxSize(maxSize) {
    // One thread makes the pool a serial queue.
    m_queue.setMaxThreadCount(1);
    m_queue.setExpiryTimeout(1'000);
}

LogFile::~LogFile() {
    m_queue.clear();
    m_queue.waitForDone();
}

void LogFile::append(const QString& line) {
    enqueue([this, line] { write(line); });
}

void LogFile::clear() {
    enqueue([this] {
        QFile::remove(m_path);
        QFile::remove(m_rotatedPath);
    });
}

void LogFile::waitForWrites() {
    m_queue.waitForDone();
}

void LogFile::enqueue(std::function<void()> work) {
    m_queue.start([work = std::move(work)] {
        thread_local const bool lowered = (lowerPriorityOfThisThread(), true);
        Q_UNUSED(lowered);
        work();
    });
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
