// Whatever a gamma file holds, what is taken of it is a matrix of gammas, and it writes and reads
// back as it is. The first byte is the number of variables.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "graph/model/gamma_file.h"
#include "shell/text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarven;
    if (size == 0) return 0;
    const int nvar = data[0] % 60;
    const std::vector<std::string> lines =
        Split_lines(To_latin1({reinterpret_cast<const char*>(data) + 1, size - 1}));
    const auto gammas = Read_gamma_file(lines, nvar, "x.GAM");
    if (!gammas) {
        if (gammas.failure().messages.empty()) std::abort();
        return 0;
    }
    if (gammas->size() != static_cast<std::size_t>(nvar) * static_cast<std::size_t>(nvar))
        std::abort();
    for (const double gamma : *gammas)
        if (!(std::abs(gamma) <= 1) && gamma != 999) std::abort();
    const std::vector<std::string> written = GAM_lines(*gammas, nvar);
    const auto again = Read_gamma_file(written, nvar, "x.GAM");
    if (!again || GAM_lines(*again, nvar) != written) std::abort();
    return 0;
}
