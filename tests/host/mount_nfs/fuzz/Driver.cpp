#include "Targets.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bitset>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>
#include <string_view>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/common_interface_defs.h>
#endif

// Spoils sound answers for a number of seconds and keeps what reaches new code of the decoders as a
// start for more. The compiler calls __sanitizer_cov_trace_pc in each of their branches (gcc's
// -fsanitize-coverage=trace-pc).
using namespace harbrix::nfs;

namespace {

std::bitset<1 << 16> reached;
std::uintptr_t lastPlace = 0;
bool reachedMore = false;

constexpr std::size_t longestInput = 32 * 1024;
constexpr std::size_t largestCorpus = 4096;

struct Run {
    const FuzzTarget* target = nullptr;
    std::uint32_t seed = 0;
    std::size_t number = 0;
    FuzzInput input;
} run;

void report() {
    std::fprintf(stderr, "\nfuzz: target \"%s\", seed %u, input %zu: ", run.target->name, run.seed,
                 run.number);
    for (const std::uint8_t byte : run.input)
        std::fprintf(stderr, "%02x", byte);
    std::fprintf(stderr, "\n");
}

void aborted(int number) {
    report();
    std::signal(number, SIG_DFL);
    std::raise(number);
}

void change(FuzzInput& input, const std::vector<FuzzInput>& corpus, std::mt19937& random) {
    static constexpr std::array<std::uint32_t, 10> telling{
        0, 1, 2, 3, 0xff, 0x1000, 0x7fffffff, 0x80000000, 0xfffffffc, 0xffffffff};
    const std::size_t at = input.empty() ? 0 : random() % input.size();
    const auto place = input.begin() + static_cast<std::ptrdiff_t>(at);
    switch (random() % 8) {
    case 0:
        input.resize(at);
        return;
    case 1:
        input.insert(place, random() % 9, static_cast<std::uint8_t>(random()));
        return;
    case 2: { // a piece of another one
        const FuzzInput& other = corpus[random() % corpus.size()];
        if (other.empty())
            return;
        const std::size_t from = random() % other.size() & ~std::size_t{3};
        const std::size_t size = std::min<std::size_t>(random() % 200, other.size() - from);
        const FuzzInput piece(other.begin() + static_cast<std::ptrdiff_t>(from),
                              other.begin() + static_cast<std::ptrdiff_t>(from + size));
        input.insert(place, piece.begin(), piece.end());
        return;
    }
    case 3: {
        const auto count = std::min<std::size_t>(random() % 16, input.size() - at);
        input.erase(place, place + static_cast<std::ptrdiff_t>(count));
        return;
    }
    case 4:
        if (!input.empty())
            *place ^= static_cast<std::uint8_t>(1u << random() % 8);
        return;
    case 5:
        if (!input.empty())
            *place = static_cast<std::uint8_t>(random());
        return;
    default: { // a length, a count, a status
        const std::size_t word = at & ~std::size_t{3};
        const std::uint32_t value = telling[random() % telling.size()];
        for (std::size_t byte = 0; byte < 4 && word + byte < input.size(); ++byte)
            input[word + byte] = static_cast<std::uint8_t>(value >> (24 - 8 * byte));
    }
    }
}

/// Whether the input reaches code that none before it has reached.
bool tryInput() {
    // In memory of its exact size, so that the address sanitizer sees each byte read past the end.
    const auto exact = std::make_unique<std::uint8_t[]>(run.input.size());
    std::copy(run.input.begin(), run.input.end(), exact.get());
    reachedMore = false;
    lastPlace = 0;
    run.target->run({exact.get(), run.input.size()});
    ++run.number;
    return reachedMore;
}

void fuzz(std::chrono::seconds duration) {
    const auto end = std::chrono::steady_clock::now() + duration;
    std::mt19937 random(run.seed);
    std::vector<FuzzInput> corpus = run.target->seeds();
    for (const FuzzInput& sound : run.target->seeds()) {
        run.input = sound;
        (void) tryInput();
    }
    while (std::chrono::steady_clock::now() < end) {
        run.input = corpus[random() % corpus.size()];
        for (std::uint32_t changes = random() % 6 + 1; changes > 0; --changes)
            change(run.input, corpus, random);
        run.input.resize(std::min(run.input.size(), longestInput));
        if (tryInput() && corpus.size() < largestCorpus)
            corpus.push_back(run.input);
    }
    std::printf("%s: %zu inputs, %zu branches, %zu kept, seed %u\n", run.target->name, run.number,
                reached.count(), corpus.size(), run.seed);
}

bool readNumber(const char* text, std::uint32_t& into) {
    const char* end = text + std::strlen(text);
    return std::from_chars(text, end, into).ptr == end && *text != '\0';
}

} // namespace

extern "C" void __sanitizer_cov_trace_pc();
extern "C" void __sanitizer_cov_trace_pc() {
    // Relative to this program, so that one seed takes the same way each time.
    const auto here = reinterpret_cast<std::uintptr_t>(__builtin_return_address(0)) -
                      reinterpret_cast<std::uintptr_t>(&__sanitizer_cov_trace_pc);
    const std::size_t edge = (here ^ lastPlace >> 1) % reached.size();
    lastPlace = here;
    if (!reached[edge]) {
        reached.set(edge);
        reachedMore = true;
    }
}

namespace {

int fuzzOne(const FuzzTarget& target, std::chrono::seconds duration) {
    run.target = &target;
    std::signal(SIGABRT, aborted);
    std::signal(SIGSEGV, aborted);
#ifdef __SANITIZE_ADDRESS__
    __sanitizer_set_death_callback(report);
#endif
    fuzz(duration);
    return 0;
}

/// All families at the same time, each in a process of its own.
int fuzzAll(std::chrono::seconds duration) {
    (void) !nice(10); // what runs beside may have time limits
    std::size_t children = 0;
    for (const FuzzTarget& target : fuzzTargets()) {
        const pid_t child = fork();
        if (child == 0)
            std::exit(fuzzOne(target, duration));
        children += child > 0;
    }
    bool allEndedWell = children == fuzzTargets().size();
    for (int status = 0; children > 0 && wait(&status) > 0; --children)
        allEndedWell = allEndedWell && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return allEndedWell ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    std::uint32_t duration = 5;
    run.seed = std::random_device()();
    const bool isUsable = argc <= 4 && (argc < 2 || readNumber(argv[1], duration)) &&
                          (argc < 3 || readNumber(argv[2], run.seed));
    const auto targets = fuzzTargets();
    const auto found = std::find_if(targets.begin(), targets.end(), [&](const FuzzTarget& target) {
        return argc == 4 && std::string_view(target.name) == argv[3];
    });
    if (!isUsable || (argc == 4 && found == targets.end())) {
        std::fprintf(stderr, "usage: fuzz_nfs_decoders [SECONDS [SEED [FAMILY]]]\n");
        return 64;
    }
    const std::chrono::seconds seconds(duration);
    return found == targets.end() ? fuzzAll(seconds) : fuzzOne(*found, seconds);
}
