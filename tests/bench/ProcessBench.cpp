// What running a tool costs beyond starting and reaping it: executeProcess() of /bin/true against
// posix_spawn(3) and waitpid(2) alone, in turns within one run.

#include "base/TaskScope.h"
#include "config/NASConfigStore.h"
#include "core/AppStateManager.h"
#include "credentials/KeychainManager.h"
#include "fakes/InMemorySecretStore.h"
#include "mount/MountEngine.h"
#include "platform/ChildProcess.h"
#include "platform/FileSystem.h"
#include "platform/UserDefaults.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTemporaryDir>

#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdio>

using namespace harbrix;

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int rounds = 200;
constexpr auto tool = "/bin/true";

double median(std::vector<double> values) {
    std::ranges::nth_element(values, values.begin() + rounds / 2);
    return values[rounds / 2];
}

double spawnAlone() {
    const auto begun = Clock::now();
    char* words[] = {const_cast<char*>(tool), nullptr};
    pid_t child = -1;
    if (::posix_spawn(&child, tool, nullptr, nullptr, words, environ) != 0)
        return -1;
    ::waitpid(child, nullptr, 0);
    return Milliseconds(Clock::now() - begun).count();
}

Task<void> runTool(MountEngine* engine, std::optional<QByteArray> input, QEventLoop* loop) {
    auto run = engine->executeProcess(tool, {}, MountEngine::mountTimeout, input);
    const auto result = co_await run;
    loop->exit(result && result->exitCode == 0 ? 0 : 1);
}

double executeProcess(MountEngine& engine, const std::optional<QByteArray>& input) {
    QEventLoop loop;
    TaskScope scope;
    const auto begun = Clock::now();
    scope.launch(runTool(&engine, input, &loop));
    if (loop.exec() != 0)
        std::fprintf(stderr, "%s failed\n", tool);
    return Milliseconds(Clock::now() - begun).count();
}

/// How long the main thread is held up by the start alone.
double launchAlone(ProcessLauncher& launcher) {
    const auto begun = Clock::now();
    const auto child = launcher.launch(tool, {}, ProcessLauncher::Input::Inherited);
    const double spent = Milliseconds(Clock::now() - begun).count();
    QCoreApplication::processEvents();
    return child ? spent : -1;
}

void print(const char* what, const std::vector<double>& values, double baseline) {
    const double middle = median(values);
    std::printf("%-44s %8.3f ms %+8.3f ms %8.2f times, worst %.3f ms\n", what, middle,
                middle - baseline, middle / baseline, *std::ranges::max_element(values));
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QTemporaryDir directory;
    RealScheduler scheduler;
    UserDefaults defaults(directory.filePath("defaults.json"));
    AppStateManager appState([&scheduler] { return scheduler.wallClock(); });
    InMemorySecretStore secrets;
    KeychainManager keychain(secrets);
    NASConfigStore store(defaults, appState, keychain);
    const auto fileSystem = FileSystem::create();
    const auto launcher = ProcessLauncher::create();
    MountEngine engine(keychain, store, appState, *fileSystem, *launcher, scheduler,
                       directory.path());

    std::vector<double> alone, plain, fed, started;
    for (int i = 0; i < rounds; ++i) {
        alone.push_back(spawnAlone());
        plain.push_back(executeProcess(engine, std::nullopt));
        fed.push_back(executeProcess(engine, QByteArray(400, 'x')));
        started.push_back(launchAlone(*launcher));
    }
    std::printf("%d rounds of %s, medians\n", rounds, tool);
    const double baseline = median(alone);
    print("posix_spawn and waitpid", alone, baseline);
    print("executeProcess", plain, baseline);
    print("executeProcess with input", fed, baseline);
    print("of which the start, on the main thread", started, baseline);
    return 0;
}
