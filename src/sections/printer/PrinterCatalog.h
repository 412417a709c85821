#pragma once
// The printer catalog (printerconf.xml beside the program): the printers, print
// resolutions and paper types that the print configuration offers. Read anew each
// time the choices are shown.

#include <string>
#include <string_view>
#include <vector>

namespace rq {

struct PrinterEntry {
    std::string name;   // shown in the printer list
    std::string driver; // what printer.xml stores
};

struct ResolutionEntry {
    std::string name;        // what printer.xml stores
    std::string description; // shown
};

struct PaperEntry {
    std::string name;        // what printer.xml stores
    std::string description; // shown
};

class PrinterCatalog {
public:
    static constexpr const char* kFileName = "printerconf.xml";

    // Replaces the lists with the file's entries. False (lists empty, reason in
    // *error) when the file is missing, does not parse or its root is not
    // `printerconf`.
    bool load(const std::string& path, std::string* error);
    // Loads printerconf.xml from the program directory.
    bool loadFromProgramDirectory(std::string* error);

    // Position of the entry whose `driver` / `name` equals the text (exact, first
    // match); -1 when none.
    int indexOfDriver(std::string_view driver) const;
    int indexOfResolution(std::string_view name) const;
    int indexOfPaper(std::string_view name) const;

    std::vector<PrinterEntry> printers;
    std::vector<ResolutionEntry> resolutions;
    std::vector<PaperEntry> papers;
};

} // namespace rq
