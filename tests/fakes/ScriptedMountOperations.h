#pragma once

#include "base/Scheduler.h"
#include "mount/MountOperations.h"
#include "mount/MountPoint.h"

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <vector>

namespace harbrix {

/// Machinery that mounts nothing: the test plans how long each call takes and how it ends. It keeps
/// the set of volumes that are there, with whatever their owner does behind the program's back.
class ScriptedMountOperations final : public MountOperations {
public:
    struct Plan {
        Seconds duration{0}; ///< zero ends the call before it returns to the event loop
        std::optional<HarbrixError> error;
    };
    enum class Verb { MountSMB, MountNFS, Unmount };
    struct Call {
        Verb verb;
        QString path;
        Duration at;

        bool operator==(const Call&) const = default;
    };

    explicit ScriptedMountOperations(Scheduler& scheduler) : m_scheduler(scheduler) {}

    std::function<Plan(const NASConfig&)> planMount = [](const NASConfig&) { return Plan{}; };
    std::function<Plan(const NASConfig&)> planPing = [](const NASConfig&) { return Plan{}; };
    std::function<Plan(const QString& path)> planUnmount = [](const QString&) { return Plan{}; };
    std::function<Seconds(const QString& path)> planLook = [](const QString&) {
        return Seconds(0);
    };
    /// Called with each mount as it begins.
    std::function<void(const NASConfig&)> onMount;

    std::set<QString> volumes;
    std::vector<Call> calls;
    /// Mounts and unmounts that have begun and not ended, by path; looks are not counted.
    std::map<QString, int> inFlight;
    /// Calls that wait for their time to pass, looks too.
    int waits = 0;

    [[nodiscard]] int countOf(Verb verb) const {
        return static_cast<int>(
            std::ranges::count_if(calls, [verb](const Call& call) { return call.verb == verb; }));
    }

    Task<Result<QUrl>> mountSMB(NASConfig config) override {
        return mount(Verb::MountSMB, std::move(config));
    }
    Task<Result<QUrl>> mountNFS(NASConfig config) override {
        return mount(Verb::MountNFS, std::move(config));
    }
    Task<Result<void>> unmount(QUrl mountPoint, UnmountMode) override {
        const QString path = directoryPath(mountPoint);
        calls.push_back({Verb::Unmount, path, m_scheduler.now()});
        const Plan plan = planUnmount(path);
        ++inFlight[path];
        auto wait = take(plan.duration);
        co_await wait;
        --inFlight[path];
        if (plan.error)
            co_return std::unexpected(*plan.error);
        volumes.erase(path);
        co_return Result<void>();
    }
    Task<Result<Seconds>> ping(NASConfig config) override {
        const Plan plan = planPing(config);
        auto wait = take(plan.duration);
        co_await wait;
        if (plan.error)
            co_return std::unexpected(*plan.error);
        co_return Seconds(0.001);
    }
    [[nodiscard]] QString resolveMountPoint(const NASConfig& config) const override {
        return mountPointPath(config, QStringLiteral("/home/ann"));
    }
    Task<bool> volumeIsMounted(QString path) override {
        auto wait = take(planLook(path));
        co_await wait;
        co_return volumes.contains(path);
    }

private:
    Task<Result<QUrl>> mount(Verb verb, NASConfig config) {
        const QString path = resolveMountPoint(config);
        calls.push_back({verb, path, m_scheduler.now()});
        if (onMount)
            onMount(config);
        if (volumes.contains(path))
            co_return directoryUrl(path);
        const Plan plan = planMount(config);
        ++inFlight[path];
        auto wait = take(plan.duration);
        co_await wait;
        --inFlight[path];
        if (plan.error)
            co_return std::unexpected(*plan.error);
        volumes.insert(path);
        co_return directoryUrl(path);
    }
    Task<void> take(Seconds duration) {
        if (duration <= Seconds(0))
            co_return;
        ++waits;
        auto pause = m_scheduler.pause(duration);
        co_await pause;
        --waits;
    }

    Scheduler& m_scheduler;
};

} // namespace harbrix
