#pragma once

#include <QByteArray>

namespace harbrix {

/// What the program under test asks of the kernel for files below one directory: fsync(2) can be
/// made to fail as on a share whose server has gone, and what the main thread does is counted.
class FileCalls {
public:
    explicit FileCalls(QByteArray directory);
    FileCalls(const FileCalls&) = delete;
    FileCalls& operator=(const FileCalls&) = delete;
    ~FileCalls();

    static void failSync(int error);
    /// How many files were synced, and how many opened, synced or closed on the main thread.
    static int synced();
    static int onMainThread();
};

} // namespace harbrix
