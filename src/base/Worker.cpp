#include "base/Worker.h"

namespace harbrix {

QThreadPool& workerPool() {
    // Never destroyed: a worker that is stuck on a dead share must not hold up the end of the
    // process.
    static QThreadPool* const pool = [] {
        auto* made = new QThreadPool;
        made->setMaxThreadCount(128);
        made->setExpiryTimeout(10'000);
        return made;
    }();
    return *pool;
}

} // namespace harbrix
