// Whatever a SYS file holds, only codes 0..dim come out of it, and what is written from them reads
// back.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "project/code_line.h"
#include "project/data_files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarven;
    const std::vector<int> dims = {2, 57, 3};
    std::string written;
    const auto write = [&](const std::uint8_t* codes, std::int32_t count) {
        for (std::size_t v = 0; v < dims.size(); ++v)
            if (codes[v] > dims[v] || count != 1) std::abort();
        Append_codes(written, codes, 3);
        written += '\n';
        return true;
    };
    LineReader file({reinterpret_cast<const char*>(data), size}, "x.SYS");
    Read_SYS_cases(file, dims, write);
    const std::string first = written;
    written.clear();
    LineReader again(first, "x.SYS");
    if (!Read_SYS_cases(again, dims, write).empty() || written != first) std::abort();
    return 0;
}
