#pragma once
// The upgrade packages kept in the program directory's Upgrade/ folder and the
// device's version file.
//
// A package's name holds "rqupdate" followed by its date YYYYMMDD
// (rqupdate20261120.rqp). A version file's first line holds "Movaro V1.0" and its
// second line begins with the runtime's date YYYYMMDD.

#include <optional>
#include <string>

namespace rq {

inline constexpr const char* kVersionMarker = "Movaro V1.0";

// A date YYYYMMDD as the number YYYYMMDD when the first 8 characters of `text` are
// decimal digits that form a valid calendar date.
std::optional<int> parseYyyymmdd(const std::string& text);

struct UpgradePackage {
    std::string path;
    int date = 0; // YYYYMMDD
};

// The newest package in DIR/Upgrade: names are taken in sorted order; the first one
// with a valid date is taken and a later one replaces it only when its date is
// strictly later. Nothing when the folder is missing or has no such name.
std::optional<UpgradePackage> newestUpgradePackage(const std::string& programDir);

// True when the version file says the device runs a runtime of `packageDate` or
// later. A missing file, a first line (read up to 99 characters) without the
// marker, or an invalid date counts as older.
bool deviceUpToDate(const std::string& versionFile, int packageDate);

} // namespace rq
