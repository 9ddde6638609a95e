// Fills and trims a cache until it is killed: argv[1] is the share, argv[2] where caches are. Tells
// of each listing in a line.

#include "base/Json.h"
#include "base/Scheduler.h"
#include "files/CacheManager.h"
#include "files/FileSystemManager.h"
#include "platform/UserDefaults.h"

#include <QCoreApplication>

#include <cstdio>

using namespace harbrix;

namespace {

Task<void> fillAndTrim(CacheManager* cache, FileSystemManager* files, Scheduler* scheduler) {
    while (true) {
        auto refreshing = files->refresh();
        co_await refreshing;
        std::puts("filling");
        std::fflush(stdout);
        auto pause = scheduler->pause(std::chrono::milliseconds(10));
        co_await pause;
        const auto entries = cache->entries();
        for (std::size_t place = 0; place < entries.size(); place += 3) {
            auto removing = cache->removeEntry(entries[place]->entry.id);
            co_await removing;
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    RealScheduler scheduler;
    UserDefaults defaults(arguments[2] + QStringLiteral("/defaults.json"));
    defaults.set(CacheManager::maxCacheSizeKey, qint64(300'000));
    CacheManager cache(defaults, scheduler, arguments[2]);
    FileSystemManager files(QUrl::fromLocalFile(arguments[1]),
                            *parseUuid(QStringLiteral("0ABC1234-0000-4000-8000-000000000001")),
                            cache, scheduler);
    files.launch(fillAndTrim(&cache, &files, &scheduler));
    return QCoreApplication::exec();
}
