#pragma once
// The dialog "Print Configuration": its texts, its form (the positions selected in
// the catalog's three lists and the three texts), and the functions that fill the
// form from the section and store it back.

#include "sections/printer/PrinterCatalog.h"
#include "sections/printer/PrinterSection.h"

#include <optional>
#include <string>

namespace rq {

namespace printertext {
inline constexpr const char* kCaption = "Print Configuration";
inline constexpr const char* kBox = "HMI Print Configuration";
inline constexpr const char* kPrinterType = "Printer Type:";
inline constexpr const char* kResolution = "Print Resolution:";
inline constexpr const char* kPaperType = "Paper Type:";
inline constexpr const char* kTopMargin = "Top Margin(cm):";
inline constexpr const char* kLeftMargin = "Left Margin(cm):";
inline constexpr const char* kScaling = "Print Magnification:";
inline constexpr const char* kStepName = "Print Configuration";
} // namespace printertext

struct PrinterForm {
    int printer = -1; // positions in the catalog's lists; -1 = none selected
    int resolution = -1;
    int paper = -1;
    std::string topMargin;
    std::string leftMargin;
    std::string scaling;
};

// Selects the printer whose driver, the resolution and the paper whose name equal
// the stored values (exact; none selected when none matches).
PrinterForm printerFormFromConfig(const PrinterConfig& config, const PrinterCatalog& catalog);
// The selected printer's driver, resolution's and paper's names and the three
// texts as typed; a list without a selection keeps the stored value.
void storePrinterForm(const PrinterForm& form, const PrinterCatalog& catalog,
                      PrinterConfig& config);
// The texts are taken as typed; the only refusal is a character that printer.xml
// cannot hold, naming the field.
std::optional<std::string> validatePrinterForm(const PrinterForm& form);

} // namespace rq
