// Any bytes as what a user does: steps, edits, interrupts, batches and ways back in any order, beside the
// plain simulation and the copies kept for each step back.

#include <cstddef>
#include <cstdint>
#include <string>

#include "tests/fuzz/FuzzSupport.h"
#include "tests/simulation/KeptCopies.h"

namespace {

using namespace tavinor;

/// The input as a source of chance; zeros behind its end.
class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    [[nodiscard]] bool used() const { return next_ >= size_; }
    std::uint32_t operator()() { return byte() << 8 | byte(); }

  private:
    std::uint32_t byte() { return used() ? 0U : data_[next_++]; }

    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t next_ = 0;
};

void expectNone(const std::string& differences) {
    fuzz::expect(differences.empty(), differences.c_str());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr int mostTurns = 200;
    Input input(data, size);
    test::KeptCopies kept([&input] { return input(); });
    for (int turn = 0; turn < mostTurns && !input.used(); ++turn) {
        const std::int32_t choice = kept.twins.any(8);
        if (choice >= 5 || kept.entries.empty()) {
            constexpr std::uint64_t manyRows = 6'000;
            const bool many = choice == 5 && kept.twins.rows() < manyRows;
            expectNone(kept.play(many ? 1 + kept.twins.any(5'000) : 1));
        } else if (choice < 2) {
            expectNone(kept.oneStepBack());
        } else if (choice == 2) {
            expectNone(kept.goBackTo(kept.entries.size() / 2));
        } else {
            expectNone(choice == 3 ? kept.backToBreakpoint() : kept.backToLastWrite());
        }
    }
    return 0;
}
