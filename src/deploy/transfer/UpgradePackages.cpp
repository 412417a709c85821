#include "deploy/transfer/UpgradePackages.h"

#include "core/FileUtil.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <vector>

namespace fs = std::filesystem;

namespace rq {

std::optional<int> parseYyyymmdd(const std::string& text) {
    if (text.size() < 8)
        return std::nullopt;
    for (int i = 0; i < 8; ++i)
        if (text[i] < '0' || text[i] > '9')
            return std::nullopt;
    const int year = std::stoi(text.substr(0, 4));
    const int month = std::stoi(text.substr(4, 2));
    const int day = std::stoi(text.substr(6, 2));
    if (year < 1 || month < 1 || month > 12 || day < 1)
        return std::nullopt;
    static const int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    const int last = kDays[month - 1] + (month == 2 && leap ? 1 : 0);
    if (day > last)
        return std::nullopt;
    return year * 10000 + month * 100 + day;
}

std::optional<UpgradePackage> newestUpgradePackage(const std::string& programDir) {
    const fs::path dir = fs::path(programDir) / "Upgrade";
    std::error_code ec;
    std::vector<std::string> names;
    for (fs::directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec))
        names.push_back(it->path().filename().string());
    std::sort(names.begin(), names.end());
    std::optional<UpgradePackage> best;
    for (const auto& name : names) {
        auto at = name.find("rqupdate");
        if (at == std::string::npos)
            continue;
        auto date = parseYyyymmdd(name.substr(at + 8));
        if (!date)
            continue;
        if (!best || *date > best->date)
            best = UpgradePackage{(dir / name).string(), *date};
    }
    return best;
}

bool deviceUpToDate(const std::string& versionFile, int packageDate) {
    std::FILE* f = std::fopen(versionFile.c_str(), "r");
    if (!f)
        return false;
    char line[100] = {};
    bool marked = std::fgets(line, sizeof line, f) && std::strstr(line, kVersionMarker);
    char second[100] = {};
    bool dated = marked && std::fgets(second, sizeof second, f);
    std::fclose(f);
    if (!dated)
        return false;
    auto date = parseYyyymmdd(second);
    return date && *date >= packageDate;
}

} // namespace rq
