#pragma once

#include "automation/ShareSaver.h"
#include "automation/StrategyFixture.h"
#include "files/CacheDirectoryManager.h"
#include "files/CacheManager.h"
#include "files/FileBrowserState.h"
#include "files/RecentFilesTracker.h"
#include "platform/LoginItem.h"
#include "services/LanguageManager.h"
#include "services/LogManager.h"
#include "services/NotificationPreferences.h"
#include "ui/Environment.h"
#include "ui/form/FormDrafts.h"
#include "ui/widgets/SymbolIcon.h"

#include <QTemporaryDir>

namespace harbrix {

/// All that the windows stand on: the real state and services over a machine that is played.
class UiWorld {
public:
    UiWorld() { ensureResources(); }

    QTemporaryDir directory;
    Automation automation{directory.filePath("defaults.json")};
    LanguageManager language{automation.defaults};
    ShareSaver saver{automation.store, automation.keychain, automation.strategy};
    FormDrafts drafts{automation.store};
    std::vector<QUrl> opened;
    int updateChecks = 0;
    CacheManager cache{automation.defaults, automation.scheduler, directory.filePath("caches")};
    RecentFilesTracker recentFiles{automation.defaults, automation.scheduler};
    FileBrowserState browserState;
    std::vector<QUrl> shownInFileViewer;
    QStringList finishedTransfers;
    LogManager log{automation.defaults, directory.filePath("support"), directory.path()};
    NotificationPreferences notifications{automation.defaults};
    CacheDirectoryManager cacheDirectory{cache, automation.defaults, automation.scheduler};
    LoginItem loginItem{directory.filePath("config"), "com.harbrix.app", "/usr/bin/harbrix"};
    Environment environment = environmentWith(cache, automation.scheduler);

    /// The same, with a cache and a clock of the caller's.
    [[nodiscard]] Environment environmentWith(CacheManager& otherCache, Scheduler& scheduler) {
        return {
            automation.appState,
            automation.store,
            language,
            automation.network,
            automation.strategy,
            automation.engine,
            saver,
            drafts,
            [this](const QUrl& url) { opened.push_back(url); },
            [this] { ++updateChecks; },
            {browserState, otherCache, recentFiles, scheduler,
             [this](const QUrl& file) { shownInFileViewer.push_back(file); },
             [this](const QString& fileName, TransferDirection) { finishedTransfers << fileName; }},
            {automation.defaults, log, notifications, cacheDirectory, loginItem}};
    }
};

} // namespace harbrix
