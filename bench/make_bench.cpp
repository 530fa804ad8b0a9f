// MAKE as a whole process against `LC_ALL=C sort | uniq -c` on the SYS file that it writes, which
// orders and counts the same lines but neither reads nor recodes raw data. Run alone it prints a
// table: seconds and peak memory of each, best of five, and their ratio.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "project/case_tally.h"
#include "project/data_files.h"
#include "project/make.h"

namespace {

using namespace tarven;
namespace fs = std::filesystem;

constexpr int Variables = 12;
constexpr int Columns = 20;
constexpr int Categories = 4;
constexpr int Runs = 5;

ProjectDefinition Definition() {
    ProjectDefinition definition;
    definition.NTAL = Columns;
    definition.N = Variables;
    for (std::size_t v = 1; v <= Variables; ++v) {
        Variable& variable = definition.variables[v];
        variable.label = static_cast<char>('@' + v);
        variable.VARNO = static_cast<int>(v + v / 2);  // columns 1, 3, 4, 6, 7, ... 18
        variable.dim = Categories;
        variable.vtype = Ordinal;
        variable.vfra = 1;
        for (std::size_t c = 1; c <= Categories; ++c) variable.vtil[c] = static_cast<double>(c);
    }
    return definition;
}

/// Records of random patterns among `patterns` different ones (0: every case its own pattern).
void Write_DAT(const fs::path& path, std::int64_t cases, std::int64_t patterns) {
    std::mt19937_64 random(1);
    const ProjectDefinition definition = Definition();
    std::ofstream out(path, std::ios::binary);
    for (std::int64_t k = 0; k < cases; ++k) {
        // An odd multiplier scatters the pattern numbers over all 4^12 patterns without a clash.
        const std::uint64_t number = patterns > 0 ? random() % static_cast<std::uint64_t>(patterns)
                                                  : static_cast<std::uint64_t>(k);
        const std::uint64_t pattern = number * 2654435761u & ((1u << 2 * Variables) - 1);
        std::string record[Columns];
        for (int c = 0; c < Columns; ++c) {
            const std::uint64_t value = random() % 1000;
            record[c] = std::to_string(value / 10);
            if (c % 3 == 0) record[c] += "." + std::to_string(value % 10);
        }
        for (std::size_t v = 1; v <= Variables; ++v)
            record[definition.variables[v].VARNO - 1] =
                std::to_string(1 + (pattern >> 2 * (v - 1)) % Categories);
        std::string line;
        for (const std::string& word : record) line += word + ' ';
        line.back() = '\n';
        out << line;
    }
}

struct Cost {
    double seconds = 1e9;
    long kilobytes = 0;
};

/// Runs in a process of its own, so that its peak memory can be told; the best of a few.
Cost Cost_of(const std::function<bool()>& work) {
    Cost best;
    for (int run = 0; run < Runs; ++run) {
        std::fflush(stdout);
        const auto start = std::chrono::steady_clock::now();
        const pid_t child = fork();
        if (child == 0) _exit(work() ? 0 : 1);
        int status = 0;
        struct rusage usage {};
        wait4(child, &status, 0, &usage);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        if (status != 0) {
            std::puts("a run failed");
            std::exit(1);
        }
        best.seconds = std::min(best.seconds, taken.count());
        best.kilobytes = std::max(best.kilobytes, usage.ru_maxrss);
    }
    return best;
}

bool Shell(const std::string& command) {
    execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
    return false;
}

/// What opening a project does with its SYS and TAB files: every line of both is checked, and that
/// they hold the same cases.
bool Open(const fs::path& SYS, const fs::path& TAB) {
    const std::vector<int> dims(Variables, Categories);
    CaseTally SYS_cases;
    LineReader SYS_file(SYS);
    LineReader TAB_file(TAB);
    CellStore store;
    std::int64_t cases = 0;
    return Read_SYS_cases(SYS_file, dims,
                          [&](const std::uint8_t* codes, std::int32_t count) {
                              SYS_cases.Add(codes, Variables, count);
                              return true;
                          })
               .empty() &&
           Read_TAB_store(TAB_file, dims, store, cases).empty() && Tally_of(store) == SYS_cases;
}

void Compare(const fs::path& folder, std::int64_t cases, std::int64_t patterns) {
    const fs::path DAT = folder / "m.DAT";
    const fs::path SYS = folder / "m.SYS";
    const fs::path TAB = folder / "m.TAB";
    Write_DAT(DAT, cases, patterns);
    const Cost make =
        Cost_of([&] { return Make_files(Definition(), DAT, SYS, TAB, {}).TAB_written; });
    const Cost sort = Cost_of([&] {
        return Shell("LC_ALL=C sort '" + SYS.string() + "' | uniq -c > '" +
                     (folder / "m.uniq").string() + "'");
    });
    const Cost open = Cost_of([&] { return Open(SYS, TAB); });
    const Cost wc = Cost_of([&] {
        return Shell("LC_ALL=C wc '" + SYS.string() + "' '" + TAB.string() + "' > /dev/null");
    });
    std::printf("| %8lld | %8lld | %6.3f | %6.3f | %5.2f | %5ld | %5ld | %6.3f | %6.3f | %5.2f |\n",
                static_cast<long long>(cases), static_cast<long long>(Count_lines(TAB)),
                make.seconds, sort.seconds, make.seconds / sort.seconds, make.kilobytes / 1024,
                sort.kilobytes / 1024, open.seconds, wc.seconds, open.seconds / wc.seconds);
}

}  // namespace

int main() {
    std::string name = (fs::temp_directory_path() / "tarven-bench-XXXXXX").string();
    if (!mkdtemp(name.data())) return 1;
    std::puts(
        "|    cases | patterns | MAKE s | sort s | ratio |  MiB  | sort  | open s |   wc s | "
        "ratio |");
    for (const std::int64_t cases : {10000, 100000, 300000, 1000000}) Compare(name, cases, 100000);
    for (const std::int64_t cases : {100000, 400000, 1637500}) Compare(name, cases, 0);
    fs::remove_all(name);
}
