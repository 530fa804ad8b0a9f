// Records of the DAT file under definitions with a condition, a selection and decimal cut points.
// However the bytes look, every code is 0..dim, and the short road to the cases gives what reading
// and recoding each record gives.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>
#include <vector>

#include "project/data_files.h"
#include "project/frequencies.h"

namespace {

using namespace tarven;

ProjectDefinition Definition() {
    ProjectDefinition definition;
    definition.NTAL = 4;
    definition.N = 3;
    for (std::size_t v = 1; v <= 3; ++v) {
        Variable& variable = definition.variables[v];
        variable.VARNO = static_cast<int>(v);
        variable.dim = 3;
        variable.vtype = Ordinal;
        variable.vfra = -1;
        for (std::size_t c = 1; c <= 3; ++c)
            variable.vtil[c] = static_cast<double>(c) + (v == 2 ? 0.5 : 0);
    }
    definition.conditions = {{.column = 4, .lower = -5, .upper = 1e6}};
    definition.selections = {{.column = 3, .values = {0, 1, 2, 3, -1, 7}}};
    return definition;
}

void Require(bool holds) {
    if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const ProjectDefinition definition = Definition();
    static const Recoding recoding = Make_recoding(definition);
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    LineReader file(text, "x.DAT");
    RecordCounts counts;
    std::vector<std::uint8_t> taken;
    const std::string error =
        Read_DAT_cases(file, recoding, counts, [&](const std::uint8_t* codes, std::int32_t) {
            for (int v = 0; v < 3; ++v) Require(codes[v] <= 3);
            taken.insert(taken.end(), codes, codes + 3);
            return true;
        });
    Require(std::ssize(taken) == 3 * counts.accepted && counts.accepted <= counts.read);
    LineReader plain_file(text, "x.DAT");
    std::vector<double> values;
    std::vector<std::uint8_t> plain;
    std::uint8_t codes[3];
    while (Read_record(plain_file, definition.NTAL, values).ok)
        if (Recode_record(recoding, values, codes)) plain.insert(plain.end(), codes, codes + 3);
    Require(plain == taken);
    LineReader again(text, "x.DAT");
    const FrequenciesResult frequencies = Count_frequencies(definition, again, {1, 2, 3}, true);
    Require(frequencies.failure == error && frequencies.accepted == counts.accepted);
    return 0;
}
