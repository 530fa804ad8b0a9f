#include "project/make.h"

#include <fmt/format.h>

#include <chrono>
#include <limits>
#include <new>
#include <optional>
#include <system_error>

#include "project/case_tally.h"
#include "project/code_line.h"
#include "project/data.h"
#include "project/data_files.h"
#include "project/pattern_counter.h"
#include "project/raw_record.h"
#include "shell/files.h"
#include "shell/session.h"
#include "shell/user.h"

namespace tarven {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t WriteBlock = 1u << 16;
constexpr std::int64_t RecordsPerStep = 1 << 13;
/// Files that are copied or unpacked together differ by less.
constexpr std::chrono::seconds NewerBy{10};

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

/// The text of the failure, or empty. Only a plain file is removed: a name may lead to a device.
std::string Remove_file(const fs::path& file) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (fs::exists(status) && !fs::is_regular_file(status))
        return Path_text(file.filename()) + " could not be replaced: not a regular file";
    fs::remove(file, error);
    return error ? fmt::format("{} could not be removed: {}", Path_text(file.filename()),
                               error.message())
                 : std::string();
}

/// "a", "a and b", "a, b and c"
std::string Listed(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t k = 0; k < names.size(); ++k)
        text += (k == 0 ? "" : k + 1 == names.size() ? " and " : ", ") + names[k];
    return text;
}

/// The question before SYS and TAB are overwritten names those that are there.
std::string Files_at_hand(const ProjectFiles& files) {
    std::vector<std::string> names;
    for (const ProjectFile* file : {&files.SYS, &files.TAB})
        if (file->exists) names.push_back(Path_text(file->path.filename()));
    return Listed(names);
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
    if (made.by_machine)
        Show_machine_failure(made.failure);
    else if (!made.failure.empty())
        ShowMessage(made.failure);
    if (made.TAB_written)
        ShowMessage(fmt::format("{} cases included in {} non-empty cells.", made.Nused,
                                The_data.Ntabcells));
    else if (made.SYS_written)
        ShowMessage(
            fmt::format("{} cases included in the SYS file. There is no TAB file.", made.Nused));
    const std::string DAT = Path_text(The_project.files.DAT.path.filename());
    if (made.TAB_written && made.Nread == 0)
        ShowMessage(fmt::format("Warning: The DAT file, {} holds no data", DAT));
    if (!made.SYS_written) return;
    for (const std::string& line : Lines_on_words(made.no_numbers, DAT)) ShowMessage(line);
    if (made.TAB_written)
        for (const std::string& line : Lines_on_missing_variables(
                 The_project, Tally_of(The_data.TABdata), DAT, made.first_line))
            ShowMessage(line);
}

/// The cases of a source, every code looked at; the text of the failure when it does not fit the
/// variables.
std::string Tally_of(DataSource source, CaseTally& tally) {
    const int N = The_project.N;
    return Read_cases(Cases_of_project(), source,
                      [&](const std::uint8_t* codes, std::int32_t count) {
                          tally.Add(codes, N, count);
                          return true;
                      });
}

/// Equal numbers of cases do not tell that they are the same.
std::string Difference(const CaseTally& cases, const CaseTally& TAB_cases) {
    const ProjectFiles& files = The_project.files;
    const bool from_SYS = files.SYS.exists;
    const std::string name = Path_text((from_SYS ? files.SYS : files.DAT).path.filename());
    const std::string TAB = Path_text(files.TAB.path.filename());
    const std::string only = fmt::format("Only the {} file will be used", from_SYS ? "SYS" : "DAT");
    if (cases.cases != TAB_cases.cases)
        return fmt::format("{} has {} cases, {} has {}. {}", name, cases.cases, TAB,
                           TAB_cases.cases, only);
    return fmt::format("The {} cases of {} are not those of {}. {}", cases.cases, TAB, name, only);
}

void Load_SYS_and_TAB() {
    ProjectFiles& files = The_project.files;
    const std::string old = Message_on_old_data(files);
    CaseTally SYS_cases;
    CaseTally TAB_cases;
    std::vector<std::string> misfits;
    const auto fits = [&](const std::string& failure) {
        if (!failure.empty()) misfits.push_back(failure);
        return failure.empty();
    };
    files.SYS.exists = files.SYS.exists && fits(Tally_of(DataSource::sysfile, SYS_cases));
    files.TAB.exists = files.TAB.exists && fits(Read_TAB_file());
    if (files.TAB.exists) TAB_cases = Tally_of(The_data.TABdata);
    if (files.SYS.exists && files.TAB.exists && SYS_cases != TAB_cases) {
        misfits.push_back(Difference(SYS_cases, TAB_cases));
        Dispose_data();
        files.TAB.exists = false;
    }
    const CaseTally none;
    const CaseTally& used = files.SYS.exists ? SYS_cases : files.TAB.exists ? TAB_cases : none;
    The_project.Nused = static_cast<std::int32_t>(used.cases);
    for (const std::string& line : misfits) ShowMessage(line);
    if (!old.empty()) ShowMessage(old);
    if (!misfits.empty() || !old.empty()) ShowMessage("Use MAKE to create new SYS and TAB files");
    for (const std::string& line :
         Lines_on_missing_variables(The_project, used, Path_text(files.DAT.path.filename()), 0))
        ShowMessage(line);
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
    result.first_line = counts.first_line;
    result.no_numbers = std::move(counts.no_numbers);
    result.Nused = counts.accepted;
    if (result.stopped) return result;

    const bool fits = !patterns.Overflowed();
    const bool whole = result.unreadable.empty() && fits;
    if (!fits) result.failure = Failure_of_overflow(N);
    ReplacementFile new_TAB(TAB);
    if (whole) {
        result.failure = patterns.Move_to(result.TABdata);
        if (result.failure.empty()) Write_cells(result.TABdata, new_TAB);
    }
    const bool with_TAB = whole && result.failure.empty();
    if (!new_SYS.Flush() || (with_TAB && !new_TAB.Flush())) {
        result.failure = new_SYS.ok() ? new_TAB.Failure() : new_SYS.Failure();
        result.by_machine = true;
        return result;
    }
    std::error_code no_link;
    const fs::path real_TAB = fs::weakly_canonical(TAB, no_link);
    const std::string stays = Remove_file(no_link ? TAB : real_TAB);
    if (!stays.empty()) {
        result.failure = stays;
        result.by_machine = true;
        return result;
    }
    result.SYS_written = new_SYS.Commit();
    if (!result.SYS_written)
        result.failure = new_SYS.Failure();
    else if (with_TAB && !(result.TAB_written = new_TAB.Commit()))
        result.failure = new_TAB.Failure();
    result.by_machine = !new_SYS.ok() || !new_TAB.ok();
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
    if (patterns.Overflowed()) result.failure = Failure_of_overflow(definition.N);
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

FilesMade Make() {
    ProjectFiles& files = The_project.files;
    Warn_of_long_keys();
    ShowWait("Wait! Data will be read and recoded. ");
    SetStatus(5, "Reading raw data");
    ShowMessage("*** Sorting data may be time consuming ***");
    FilesMade written;
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
            made.by_machine = true;
        }
        HideProgress();
        if (made.SYS_written) Store_made_data(made);
        Show_result_of_make(made);
        written = {made.SYS_written, made.TAB_written};
    }
    HideWait();
    SetStatus(5, "");
    return written;
}

std::string Message_on_old_data(const ProjectFiles& files) {
    const auto written = [](const ProjectFile& file) -> std::optional<fs::file_time_type> {
        if (!file.exists) return {};
        std::error_code error;
        const auto time = fs::last_write_time(file.path, error);
        return error ? std::optional<fs::file_time_type>() : time;
    };
    std::vector<std::string> newer;
    std::optional<fs::file_time_type> oldest;
    for (const ProjectFile* made : {&files.SYS, &files.TAB})
        if (const auto time = written(*made); time && (!oldest || *time < *oldest)) oldest = time;
    if (!oldest) return {};
    for (const ProjectFile* source : {&files.DEF, &files.VAR, &files.DAT})
        if (const auto time = written(*source); time && *time > *oldest + NewerBy)
            newer.push_back(Path_text(source->path.filename()));
    if (newer.empty()) return {};
    return fmt::format("{} {} newer than {}", Listed(newer), newer.size() == 1 ? "is" : "are",
                       Files_at_hand(files));
}

bool Give_up_TABdata_of_other_cases() {
    ProjectFiles& files = The_project.files;
    if (!The_data.tabdata_ready || (!The_data.data_ready && !files.SYS.exists)) return false;
    const DataSource source = The_data.data_ready ? DataSource::dataset : DataSource::sysfile;
    CaseTally cases;
    const std::string failure = Tally_of(source, cases);
    const CaseTally TAB_cases = Tally_of(The_data.TABdata);
    if (failure.empty() && cases == TAB_cases) return false;
    ShowMessage(failure.empty() ? Difference(cases, TAB_cases) : failure);
    ShowMessage("Use MAKE to create new SYS and TAB files");
    Dispose_TABdata(The_data.TABdata);
    The_data.tabdata_ready = false;
    The_data.Ntabcells = 0;
    files.TAB.exists = false;
    return true;
}

void Load_data_at_opening() {
    ProjectFiles& files = The_project.files;
    Dispose_data();
    const bool both = files.SYS.exists && files.TAB.exists;
    const bool either = files.SYS.exists || files.TAB.exists;
    // Without the compact files the raw data are read, so the run has lost nothing.
    const bool failed_before = The_session.machine_failed;
    if (!both && (files.DAT.exists || !either) && Make().TAB) return;
    The_session.machine_failed = failed_before;
    if (files.SYS.exists || files.TAB.exists) Load_SYS_and_TAB();
}

}  // namespace tarven
