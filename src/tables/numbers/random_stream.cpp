#include "tables/numbers/random_stream.h"

namespace tarven {

std::uint32_t Seed_of_time(std::chrono::system_clock::time_point moment) {
    using namespace std::chrono;
    const auto since_midnight = moment - floor<days>(moment);
    return static_cast<std::uint32_t>(floor<milliseconds>(since_midnight).count());
}

void Clock_seed(RandomStream& stream) {
    Set_seed(stream, Seed_of_time(std::chrono::system_clock::now()));
}

}  // namespace tarven
