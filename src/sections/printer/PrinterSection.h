#pragma once
// The printer section (printer.xml): how the HMI device prints. The choices offered
// for driver, resolution and paper come from the printer catalog (PrinterCatalog.h).

#include "core/ConfigSection.h"

#include <string>

namespace rq {

struct PrinterConfig {
    std::string printerName = "escp2-me1"; // the catalog's `driver`, not its display name
    std::string resolution = "360sw";      // catalog name of the resolution
    std::string paper = "A4";              // catalog name of the paper
    std::string topMargin = "1.0";         // cm
    std::string leftMargin = "1.0";        // cm
    std::string scaling = "1.0";           // magnification

    bool operator==(const PrinterConfig&) const = default;
};

class PrinterSection : public ConfigSection {
public:
    const char* fileName() const override { return "printer.xml"; }
    void clear() override { config_ = PrinterConfig{}; }
    // Does not reset first: a file that fails keeps the section's values, and a file
    // without a `config` element leaves them as they were.
    bool read(const std::string& path, ReadContext& ctx) override;
    void write(std::string& out) const override;
    std::vector<std::pair<std::string, std::size_t>> counts() const override;
    void check(CheckContext& ctx) const override;

    const PrinterConfig& config() const { return config_; }
    PrinterConfig& config() { return config_; }

private:
    PrinterConfig config_;
};

} // namespace rq
