#pragma once

#include <chrono>
#include <cstdint>

namespace tarven {

/// The random stream of the system: a 32-bit linear congruence, word := 134775813 word + 1 modulo
/// 2^32. There is one stream for the whole workspace and everything random draws from it, so the
/// order of the calls decides what is drawn. Computations take the stream as an argument.
struct RandomStream {
    std::uint32_t word = 9;  ///< the seed, or the last number drawn

    bool operator==(const RandomStream&) const = default;
};

inline void Set_seed(RandomStream& stream, std::uint32_t seed) {
    stream.word = seed;
}

/// Sets the seed to the milliseconds since midnight, universal time.
void Clock_seed(RandomStream& stream);

/// The seed that Clock_seed gives at a moment: 0..86399999.
std::uint32_t Seed_of_time(std::chrono::system_clock::time_point moment);

/// Advances the stream and returns its word.
inline std::uint32_t Random_word(RandomStream& stream) {
    return stream.word = stream.word * 134775813u + 1u;
}

/// Uniform in [0, 1), a multiple of 2^-32.
inline double Random_real(RandomStream& stream) {
    return Random_word(stream) * 0x1p-32;
}

/// Uniform in 0..bound-1: the high 32 bits of bound times the word. A bound of 0 gives 0.
inline std::uint32_t Random_int(RandomStream& stream, std::uint32_t bound) {
    return static_cast<std::uint32_t>((std::uint64_t{bound} * Random_word(stream)) >> 32);
}

}  // namespace tarven
