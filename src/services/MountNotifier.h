#pragma once

#include <QString>

namespace harbrix {

class HarbrixError;

/// Tells the user how a mount or an unmount went, as far as the user wants to be told. Main thread.
class MountNotifier {
public:
    MountNotifier() = default;
    MountNotifier(const MountNotifier&) = delete;
    MountNotifier& operator=(const MountNotifier&) = delete;
    virtual ~MountNotifier() = default;

    virtual void notifyMountSuccess(const QString& nasName) = 0;
    virtual void notifyMountFailure(const QString& nasName, const HarbrixError& error) = 0;
    virtual void notifyUnmount(const QString& nasName) = 0;
};

} // namespace harbrix
