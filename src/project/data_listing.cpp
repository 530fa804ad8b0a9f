#include "project/data_listing.h"

#include <fmt/format.h>

#include "project/code_line.h"
#include "project/data_files.h"
#include "shell/fields.h"
#include "shell/files.h"
#include "shell/words.h"

namespace tarven {

namespace {

std::string Label_line(const Project& project, const std::vector<int>& variables, int width) {
    std::string line;
    for (const int v : variables)
        line += Right(std::string(1, project.variables[static_cast<std::size_t>(v)].label), width);
    return line;
}

std::vector<std::string> Heading(const Project& project, const ProjectFile& file,
                                 const std::vector<int>& variables, int width) {
    return {"Data from " + Path_text(file.path.filename()), "",
            Label_line(project, variables, width)};
}

TakeCase List_codes(const std::vector<int>& variables, const ListingFormat& format,
                    bool with_counts, Listing& listing) {
    return [&, with_counts, left = format.records](const std::uint8_t* codes,
                                                   std::int32_t count) mutable {
        std::string line;
        for (const int v : variables) line += Field(codes[v - 1], format.width);
        if (with_counts) line += fmt::format("  {} record(s)", Field(count, 6));
        listing.lines.push_back(std::move(line));
        return --left > 0;
    };
}

}  // namespace

ListingFormat Listing_format(std::string_view answer) {
    ListingFormat format;
    const Numbers found = Extract_numbers(answer);
    const auto take = [&](int k, int& value) {
        if (found.count > k) value = found.numbers[static_cast<std::size_t>(k)];
    };
    take(0, format.records);
    take(1, format.width);
    take(2, format.decimals);
    format.ok = found.count > 0 && format.records > 0 && format.width >= 1 && format.width <= 40 &&
                format.decimals >= 0 && format.decimals <= 15;
    return format;
}

Listing List_DAT(const Project& project, const std::vector<int>& variables,
                 const ListingFormat& format) {
    Listing listing;
    LineReader file(project.files.DAT.path);
    listing.failure = file.opened() ? Make_recoding(project).failure : file.failure();
    if (!listing.failure.empty()) return listing;
    listing.lines = Heading(project, project.files.DAT, variables, format.width);
    std::vector<double> values;
    for (int record = 1; record <= format.records; ++record) {
        const RecordReading reading = Read_record(file, project.NTAL, values);
        if (!reading.ok) {
            listing.failure = reading.error;
            break;
        }
        std::string line;
        for (const int v : variables) {
            const int column = project.variables[static_cast<std::size_t>(v)].VARNO;
            line += Field(values[static_cast<std::size_t>(column)], format.width, format.decimals);
        }
        listing.lines.push_back(std::move(line));
    }
    return listing;
}

namespace {

using CaseReader = std::string (*)(LineReader&, const std::vector<int>&, const TakeCase&);

Listing List_cases(const Project& project, const ProjectFile& from, CaseReader read, bool counts,
                   const std::vector<int>& variables, const ListingFormat& format) {
    Listing listing;
    LineReader file(from.path);
    if (file.opened()) listing.lines = Heading(project, from, variables, format.width);
    listing.failure =
        read(file, Dimensions(project), List_codes(variables, format, counts, listing));
    return listing;
}

}  // namespace

Listing List_SYS(const Project& project, const std::vector<int>& variables,
                 const ListingFormat& format) {
    return List_cases(project, project.files.SYS, Read_SYS_cases, false, variables, format);
}

Listing List_TAB(const Project& project, const std::vector<int>& variables,
                 const ListingFormat& format) {
    return List_cases(project, project.files.TAB, Read_TAB_cells, true, variables, format);
}

}  // namespace tarven
