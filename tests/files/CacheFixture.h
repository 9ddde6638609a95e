#pragma once

#include "base/ManualScheduler.h"
#include "base/TaskScope.h"
#include "files/CacheManager.h"
#include "files/FileUrl.h"
#include "platform/UserDefaults.h"
#include "services/LogManager.h"
#include "support/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace harbrix {

template <typename T>
Task<void> keepResult(Task<T> task, std::optional<T>* result) {
    *result = co_await task;
}

inline Task<void> noteEnd(Task<void> task, bool* hasEnded) {
    co_await task;
    *hasEnded = true;
}

/// A share and a cache in a temporary folder, with a log that can be read.
class CacheFixture : public testing::Test {
protected:
    CacheFixture() {
        QDir(root()).mkpath(QStringLiteral("share"));
        defaults.set(QString::fromLatin1(LogManager::fileLoggingKey), true);
    }

    [[nodiscard]] QString root() const { return m_folder.path(); }
    [[nodiscard]] QString sharePath(const QString& name) const {
        return root() + QStringLiteral("/share/") + name;
    }
    [[nodiscard]] QUrl shareUrl(const QString& name) const {
        return QUrl::fromLocalFile(sharePath(name));
    }
    [[nodiscard]] QString cachePath(const QString& name = {}) const {
        return root() + QStringLiteral("/caches/Harbrix/FileCache/") + name;
    }
    [[nodiscard]] QString copyPath(const QString& relativePath) const {
        return cachePath(QStringLiteral("0ABC1234/") + relativePath);
    }

    static void write(const QString& path, const QByteArray& contents) {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QFile::WriteOnly)) << path.toStdString();
        ASSERT_EQ(file.write(contents), contents.size());
    }
    /// A file of this size without data on disk.
    static void writeSparse(const QString& path, qint64 size) {
        write(path, {});
        ASSERT_TRUE(QFile::resize(path, size));
    }
    static std::optional<QByteArray> read(const QString& path) {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? std::optional(file.readAll()) : std::nullopt;
    }

    /// Runs an operation to its end.
    template <typename T>
    T run(Task<T> task) {
        std::optional<T> result;
        TaskScope scope;
        scope.launch(keepResult(std::move(task), &result));
        settleUntil([&result] { return result.has_value(); });
        return std::move(*result);
    }
    void run(Task<void> task) {
        bool hasEnded = false;
        TaskScope scope;
        scope.launch(noteEnd(std::move(task), &hasEnded));
        settleUntil([&hasEnded] { return hasEnded; });
    }
    void settleUntil(const std::function<bool()>& condition) {
        const bool isMet = waitUntil([&] {
            scheduler.advance(Seconds(0));
            return condition();
        });
        if (!isMet)
            qFatal("Nothing happened for too long");
    }

    std::unique_ptr<CacheManager> makeCache() {
        auto cache =
            std::make_unique<CacheManager>(defaults, scheduler, root() + QStringLiteral("/caches"));
        bool isLoaded = false;
        TaskScope scope;
        scope.launch(awaitLoad(cache.get(), &isLoaded));
        settleUntil([&isLoaded] { return isLoaded; });
        return cache;
    }
    std::optional<CacheEntry> cacheFile(CacheManager& cache, const QString& name) {
        return run(cache.cacheFile(shareUrl(name), configID, name));
    }

    /// The messages so far, without what stands in front of them.
    QStringList messages() {
        logs.waitForWrites();
        QStringList lines = logs.combinedLogText().split(u'\n', Qt::SkipEmptyParts);
        for (QString& line : lines)
            line = line.mid(line.indexOf(QStringLiteral(" - ")) + 3);
        return lines;
    }
    [[nodiscard]] QStringList namesInIndex(const CacheManager& cache) const {
        QStringList names;
        for (const auto& record : cache.index().snapshot())
            names << record->entry.fileName;
        return names;
    }

    const QUuid configID{QStringLiteral("{0abc1234-0000-4000-8000-000000000001}")};

private:
    static Task<void> awaitLoad(CacheManager* cache, bool* isLoaded) {
        auto loaded = cache->loaded();
        co_await loaded;
        *isLoaded = true;
    }

    QTemporaryDir m_folder;

protected:
    ManualScheduler scheduler;
    UserDefaults defaults{root() + QStringLiteral("/defaults.json")};
    LogManager logs{defaults, root() + QStringLiteral("/support"), root()};
};

} // namespace harbrix
