#pragma once

#include "base/ManualScheduler.h"
#include "base/TaskScope.h"
#include "config/NASConfigStore.h"
#include "core/AppStateManager.h"
#include "credentials/KeychainManager.h"
#include "fakes/InMemorySecretStore.h"
#include "fakes/ScriptedFileSystem.h"
#include "fakes/ScriptedProcessLauncher.h"
#include "mount/MountEngine.h"
#include "mount/MountPoint.h"
#include "platform/UserDefaults.h"
#include "support/WaitUntil.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace harbrix {

using namespace std::chrono_literals;

template <typename T>
Task<void> keepResult(Task<T> task, std::optional<T>* result) {
    result->emplace(co_await task);
}

/// The engine with played tools and a played file system.
class EngineTest : public testing::Test {
protected:
    EngineTest() {
        fileSystem.addDirectory("/home/ann");
        fileSystem.addFile("/usr/bin/expect");
        launcher.onLaunch = [this](ScriptedChild& child) { answer(child); };
    }

    /// Runs a call of the engine to its end; nothing if it does not end while the clock stands.
    template <typename T>
    std::optional<T> finish(Task<T> task) {
        std::optional<T> result;
        TaskScope scope;
        scope.launch(keepResult(std::move(task), &result));
        const bool ended = waitUntil([&] {
            scheduler.settle();
            return result.has_value();
        });
        EXPECT_TRUE(ended);
        return result;
    }
    /// How tools answer: by their path, else with success.
    struct Answer {
        int code = 0;
        QByteArray output;
        QByteArray error;
    };
    void answer(ScriptedChild& child) {
        const auto found = answers.find(child.executablePath);
        const Answer said = found == answers.end() ? Answer{} : found->second;
        child.exit(said.code, said.output, said.error);
    }

    static NASConfig smbShare() {
        NASConfig config = NASConfig::blank();
        config.name = "media";
        config.address = "192.0.2.10";
        config.sharePath = "media";
        config.username = "ann";
        config.keychainIdentifier = "key";
        return config;
    }
    void storePassword(const QByteArray& password) {
        secrets.put({SecretIdentity::Kind::GenericPassword,
                     {{"service", KeychainManager::service}, {"account", "key"}}},
                    password);
    }

    QTemporaryDir directory;
    ManualScheduler scheduler;
    UserDefaults defaults{directory.filePath("defaults.json")};
    AppStateManager appState{[this] { return scheduler.wallClock(); }};
    InMemorySecretStore secrets;
    KeychainManager keychain{secrets};
    NASConfigStore store{defaults, appState, keychain};
    ScriptedFileSystem fileSystem;
    ScriptedProcessLauncher launcher{scheduler};
    std::map<QString, Answer> answers;
    MountEngine engine{keychain, store, appState, fileSystem, launcher, scheduler, "/home/ann"};
};

} // namespace harbrix
