#pragma once

#include "mount_nfs/protocol/Buffer.h"

#include <cstdint>
#include <span>
#include <vector>

namespace harbrix::nfs {

using FuzzInput = std::vector<std::uint8_t>;

/// One family of decoders.
struct FuzzTarget {
    const char* name;
    /// Decodes the bytes; aborts where a promise of the decoders is broken.
    void (*run)(Bytes data);
    /// Sound answers of a server, to be spoiled.
    std::vector<FuzzInput> (*seeds)();
};

[[nodiscard]] std::span<const FuzzTarget> fuzzTargets();

// Sound inputs of the three families.
[[nodiscard]] std::vector<FuzzInput> streamSeeds();
[[nodiscard]] std::vector<FuzzInput> compoundSeeds();
[[nodiscard]] std::vector<FuzzInput> attributeSeeds();

} // namespace harbrix::nfs
