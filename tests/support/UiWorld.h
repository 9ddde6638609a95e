#pragma once

#include "automation/ShareSaver.h"
#include "automation/StrategyFixture.h"
#include "files/CacheManager.h"
#include "files/FileBrowserState.h"
#include "files/RecentFilesTracker.h"
#include "services/LanguageManager.h"
#include "ui/Environment.h"
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
    std::vector<QUrl> opened;
    int updateChecks = 0;
    CacheManager cache{automation.defaults, automation.scheduler, directory.filePath("caches")};
    RecentFilesTracker recentFiles{automation.defaults, automation.scheduler};
    FileBrowserState browserState;
    std::vector<QUrl> shownInFileViewer;
    QStringList finishedTransfers;
    Environment environment{
        automation.appState,
        automation.store,
        language,
        automation.network,
        automation.strategy,
        automation.engine,
        saver,
        [this](const QUrl& url) { opened.push_back(url); },
        [this] { ++updateChecks; },
        {browserState, cache, recentFiles, automation.scheduler,
         [this](const QUrl& file) { shownInFileViewer.push_back(file); },
         [this](const QString& fileName, TransferDirection) { finishedTransfers << fileName; }}};
};

} // namespace harbrix
