#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "project/project.h"

namespace tarven {

/// How DAT and SYS list data: so many records, each number in so many columns with so many
/// decimals.
struct ListingFormat {
    int records = 10;
    int width = 8;
    int decimals = 2;
    bool ok = false;
};

/// Reads "records width:decimals"; what is left out keeps its default. Not ok without a number, for
/// a width of 0 or above 40 or for more than 15 decimals.
ListingFormat Listing_format(std::string_view answer);

/// A listing, and what went wrong while it was made.
struct Listing {
    std::vector<std::string> lines;
    std::string failure;
};

/// Raw values of the first records of the DAT file, for the project variables listed, from 1.
Listing List_DAT(const Project& project, const std::vector<int>& variables,
                 const ListingFormat& format);
/// Codes of the first cases of the SYS file.
Listing List_SYS(const Project& project, const std::vector<int>& variables,
                 const ListingFormat& format);
/// Codes and counts of the first cells of the TAB file.
Listing List_TAB(const Project& project, const std::vector<int>& variables,
                 const ListingFormat& format);

}  // namespace tarven
