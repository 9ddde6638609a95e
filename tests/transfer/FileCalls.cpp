#include "FileCalls.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

// Plain memory: close() is called before main and after it too.
char g_directory[4096];
std::atomic<bool> g_isWatching;
std::atomic<int> g_syncError;
std::atomic<int> g_synced;
std::atomic<int> g_onMainThread;

bool noteCall(int descriptor) {
    if (!g_isWatching)
        return false;
    char link[64];
    char path[4096] = {};
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    if (::readlink(link, path, sizeof path - 1) < 0 ||
        std::strncmp(path, g_directory, std::strlen(g_directory)) != 0)
        return false;
    g_onMainThread += ::getpid() == static_cast<pid_t>(::syscall(SYS_gettid));
    return true;
}

} // namespace

extern "C" int close(int descriptor) {
    noteCall(descriptor);
    return static_cast<int>(::syscall(SYS_close, descriptor));
}

extern "C" int fsync(int descriptor) {
    if (noteCall(descriptor)) {
        ++g_synced;
        if (g_syncError != 0) {
            errno = g_syncError;
            return -1;
        }
    }
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

namespace harbrix {

FileCalls::FileCalls(QByteArray directory) {
    qstrncpy(g_directory, directory.constData(), sizeof g_directory);
    g_syncError = g_synced = g_onMainThread = 0;
    g_isWatching = true;
}

FileCalls::~FileCalls() {
    g_isWatching = false;
}

void FileCalls::failSync(int error) {
    g_syncError = error;
}

int FileCalls::synced() {
    return g_synced;
}

int FileCalls::onMainThread() {
    return g_onMainThread;
}

} // namespace harbrix
