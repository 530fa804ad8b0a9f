#include "project/make.h"

#include <fmt/format.h>

#include <limits>
#include <new>
#include <system_error>

#include "project/code_line.h"
#include "project/data.h"
#include "project/data_files.h"
#include "project/pattern_counter.h"
#include "project/raw_record.h"
#include "shell/files.h"
#include "shell/user.h"

namespace tarven {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t WriteBlock = 1u << 16;
constexpr std::int64_t RecordsPerStep = 1 << 13;

void Write_when_full(ReplacementFile& file, std::string& block, std::size_t limit) {
    if (block.size() < limit) return;
    file.Write(block);
    block.clear();
}

void Write_cells(const CellStore& store, ReplacementFile& TAB) {
    std::string block;
    for (std::int64_t cell = 1; cell <= store.Ncells() && TAB.ok(); ++cell) {
        Append_codes(block, store.Cell(cell), store.N);
        block += std::to_string(store.counts[static_cast<std::size_t>(cell - 1)]);
        block += '\n';
        Write_when_full(TAB, block, WriteBlock);
    }
    TAB.Write(block);
}

void Remove_stale(const fs::path& TAB, MakeResult& result) {
    std::error_code error;
    fs::remove(TAB, error);
    if (error && result.failure.empty())
        result.failure =
            fmt::format("{} could not be removed: {}", Path_text(TAB.filename()), error.message());
}

/// The question before SYS and TAB are overwritten names those that are there.
std::string Files_at_hand(const ProjectFiles& files) {
    std::string names;
    for (const ProjectFile* file : {&files.SYS, &files.TAB}) {
        if (!file->exists) continue;
        if (!names.empty()) names += " and ";
        names += Path_text(file->path.filename());
    }
    return names;
}

void Warn_of_long_keys() {
    const KeyOverflow overflow = Key_overflow(The_project);
    if (overflow.step == 0) return;
    const auto factor = static_cast<std::uint64_t>(overflow.dim) + 1;
    const auto wrapped =
        static_cast<std::int64_t>(static_cast<std::uint64_t>(overflow.product) * factor);
    const std::string failure = Write_text_file(
        The_project.ProjectPath / "stac0.rep",
        {fmt::format("failure at step {}", overflow.step), fmt::format("   x = {}", wrapped),
         fmt::format(" glx = {}", overflow.product), fmt::format("dim = {}", overflow.dim)});
    if (!failure.empty()) ShowMessage(failure);
    ShowMessage("Sorting data may be time consuming");
}

/// Takes the result of MAKE into the workspace; what stood in memory is of the old files.
void Store_made_data(MakeResult& made) {
    Dispose_data();
    The_project.Nused = static_cast<std::int32_t>(made.Nused);
    The_project.files.SYS.exists = true;
    The_project.files.TAB.exists = made.TAB_written;
    if (!made.TAB_written) return;
    The_data.TABdata = std::move(made.TABdata);
    The_data.tabdata_ready = true;
    The_data.Ntabcells = static_cast<std::int32_t>(The_data.TABdata.Ncells());
    The_data.dims = Dimensions(The_project);
}

void Show_result_of_make(const MakeResult& made) {
    if (made.stopped) ShowMessage("MAKE was stopped. SYS and TAB files are as they were");
    if (!made.unreadable.empty()) {
        ShowMessage(made.unreadable);
        ShowMessage("Warning: Error reading data");
    }
    if (!made.failure.empty()) ShowMessage(made.failure);
    if (made.TAB_written)
        ShowMessage(fmt::format("{} cases included in {} non-empty cells.", made.Nused,
                                The_data.Ntabcells));
    else if (made.SYS_written)
        ShowMessage(
            fmt::format("{} cases included in the SYS file. There is no TAB file.", made.Nused));
    if (made.TAB_written && made.Nread == 0)
        ShowMessage(fmt::format("Warning: The DAT file, {} holds no data",
                                Path_text(The_project.files.DAT.path.filename())));
}

/// Counts the cases of the SYS file, looking at every code; -1, with a message, when it does not
/// fit the variables.
std::int64_t Checked_SYS_cases() {
    std::int64_t cases = 0;
    const std::string failure =
        Read_cases(DataSource::sysfile, [&](const std::uint8_t*, std::int32_t) {
            ++cases;
            return true;
        });
    if (failure.empty()) return cases;
    ShowMessage(failure);
    return -1;
}

void Load_SYS_and_TAB() {
    ProjectFiles& files = The_project.files;
    std::int64_t SYS_cases = -1;
    std::int64_t TAB_cases = -1;
    if (files.SYS.exists) SYS_cases = Checked_SYS_cases();
    if (files.TAB.exists) {
        const std::string failure = Read_TAB_file();
        if (failure.empty()) {
            TAB_cases = 0;
            for (const std::int32_t count : The_data.TABdata.counts) TAB_cases += count;
        } else {
            ShowMessage(failure);
        }
    }
    if (SYS_cases >= 0 && TAB_cases >= 0 && SYS_cases != TAB_cases) {
        ShowMessage(fmt::format("{} has {} cases, {} has {}. Only the SYS file will be used",
                                Path_text(files.SYS.path.filename()), SYS_cases,
                                Path_text(files.TAB.path.filename()), TAB_cases));
        Dispose_data();
        TAB_cases = -1;
    }
    const bool misfit = (files.SYS.exists && SYS_cases < 0) || (files.TAB.exists && TAB_cases < 0);
    files.SYS.exists = SYS_cases >= 0;
    files.TAB.exists = TAB_cases >= 0;
    The_project.Nused = static_cast<std::int32_t>(
        files.SYS.exists ? SYS_cases : (files.TAB.exists ? TAB_cases : 0));
    if (misfit) ShowMessage("Use MAKE to create new SYS and TAB files");
}

}  // namespace

MakeResult Make_files(const ProjectDefinition& definition, const fs::path& DAT, const fs::path& SYS,
                      const fs::path& TAB, const std::function<bool(std::int64_t read)>& step) {
    MakeResult result;
    const Recoding recoding = Make_recoding(definition);
    const int N = definition.N;
    LineReader data(DAT);
    if (N < 1 || N > MaxVariables)
        result.failure = "No project";
    else if (!data.opened())
        result.failure = "Failure: " + data.failure();
    else
        result.failure = recoding.failure;
    if (!result.failure.empty()) return result;

    ReplacementFile new_SYS(SYS);
    PatternCounter patterns(Dimensions(definition));
    RecordCounts counts;
    std::string block;
    block.reserve(WriteBlock + 4096);
    result.unreadable =
        Read_DAT_cases(data, recoding, counts, [&](const std::uint8_t* codes, std::int32_t) {
            Append_codes(block, codes, N);
            block += '\n';
            Write_when_full(new_SYS, block, WriteBlock);
            patterns.Add(codes);
            if (counts.accepted % RecordsPerStep != 0) return true;
            result.stopped = step && !step(counts.read);
            return !result.stopped && new_SYS.ok();
        });
    new_SYS.Write(block);
    result.Nread = counts.read;
    result.Nused = counts.accepted;
    if (result.stopped) return result;

    const bool fits = !patterns.Overflowed();
    const bool whole = result.unreadable.empty() && fits;
    if (!fits) result.failure = "Failure initializing TABdata";
    ReplacementFile new_TAB(TAB);
    if (whole) {
        result.failure = patterns.Move_to(result.TABdata);
        if (result.failure.empty()) Write_cells(result.TABdata, new_TAB);
    }
    const bool with_TAB = whole && result.failure.empty();
    if (!new_SYS.Flush() || (with_TAB && !new_TAB.Flush())) {
        result.failure = new_SYS.ok() ? new_TAB.Failure() : new_SYS.Failure();
        return result;
    }
    result.SYS_written = new_SYS.Commit();
    if (!result.SYS_written)
        result.failure = new_SYS.Failure();
    else if (!with_TAB)
        Remove_stale(TAB, result);
    else if (!(result.TAB_written = new_TAB.Commit()))
        result.failure = new_TAB.Failure();
    return result;
}

MakeResult Collect_records(const ProjectDefinition& definition, const fs::path& SYS,
                           const fs::path& TAB) {
    MakeResult result;
    if (definition.N < 1 || definition.N > MaxVariables) {
        result.failure = "No project";
        return result;
    }
    const std::vector<int> dims = Dimensions(definition);
    LineReader file(SYS);
    PatternCounter patterns(dims);
    result.failure = Read_SYS_cases(file, dims, [&](const std::uint8_t* codes, std::int32_t) {
        ++result.Nused;
        patterns.Add(codes);
        return true;
    });
    if (patterns.Overflowed()) result.failure = "Failure initializing TABdata";
    if (result.failure.empty()) result.failure = patterns.Move_to(result.TABdata);
    if (!result.failure.empty()) return result;
    ReplacementFile new_TAB(TAB);
    Write_cells(result.TABdata, new_TAB);
    result.TAB_written = new_TAB.Commit();
    result.failure = new_TAB.Failure();
    return result;
}

KeyOverflow Key_overflow(const ProjectDefinition& definition) {
    KeyOverflow overflow;
    for (int v = 1; v <= definition.N; ++v) {
        overflow.dim = definition.variables[static_cast<std::size_t>(v)].dim;
        if (overflow.product > std::numeric_limits<std::int64_t>::max() / (overflow.dim + 1)) {
            overflow.step = v;
            return overflow;
        }
        overflow.product *= overflow.dim + 1;
    }
    return overflow;
}

bool Make() {
    ProjectFiles& files = The_project.files;
    Warn_of_long_keys();
    ShowWait("Wait! Data will be read and recoded. ");
    SetStatus(5, "Reading raw data");
    ShowMessage("*** Sorting data may be time consuming ***");
    bool done = false;
    const std::string at_hand = Files_at_hand(files);
    if (at_hand.empty() || AskYesNo(fmt::format("SYS and/or TAB files {} already exist. Do you "
                                                "want to continue?",
                                                at_hand))) {
        MakeResult made;
        const std::int64_t lines = Count_lines(files.DAT.path);
        ShowProgress(0, lines, RecordsPerStep, "Reading and counting cases", "");
        try {
            made = Make_files(The_project, files.DAT.path, files.SYS.path, files.TAB.path,
                              [](std::int64_t) { return !StepProgress(); });
        } catch (const std::bad_alloc&) {
            made = MakeResult();
            made.failure = "Not enough memory for TABdata";
        }
        HideProgress();
        if (made.SYS_written) Store_made_data(made);
        Show_result_of_make(made);
        done = made.TAB_written;
    }
    HideWait();
    SetStatus(5, "");
    return done;
}

void Load_data_at_opening() {
    ProjectFiles& files = The_project.files;
    Dispose_data();
    const bool both = files.SYS.exists && files.TAB.exists;
    const bool either = files.SYS.exists || files.TAB.exists;
    if (!both && (files.DAT.exists || !either) && Make()) return;
    if (files.SYS.exists || files.TAB.exists) Load_SYS_and_TAB();
}

}  // namespace tarven
