#pragma once

namespace harbrix {

/// What harbrixctl ends with; the last three as in sysexits.h.
enum ExitCode : int {
    Succeeded = 0,
    Failed = 1,      ///< the program did what was asked and it did not work out
    NoSuchShare = 2, ///< no share of that name or id, or several of that name
    WrongUsage = 64,
    DamagedInput = 65, ///< a file to be read in is not what it should be
    NotRunning = 69    ///< there is no running program to ask, or it went away
};

} // namespace harbrix
