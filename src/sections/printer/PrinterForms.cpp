#include "sections/printer/PrinterForms.h"

#include "core/StorableValue.h"

#include <cstddef>
#include <string_view>

namespace rq {

PrinterForm printerFormFromConfig(const PrinterConfig& c, const PrinterCatalog& catalog) {
    PrinterForm f;
    f.printer = catalog.indexOfDriver(c.printerName);
    f.resolution = catalog.indexOfResolution(c.resolution);
    f.paper = catalog.indexOfPaper(c.paper);
    f.topMargin = c.topMargin;
    f.leftMargin = c.leftMargin;
    f.scaling = c.scaling;
    return f;
}

namespace {
template <class Entry, class Field>
void storeSelected(const std::vector<Entry>& list, int at, Field field, std::string& value) {
    if (at >= 0 && static_cast<std::size_t>(at) < list.size())
        value = list[static_cast<std::size_t>(at)].*field;
}

std::string field(std::string_view label) {
    if (!label.empty() && label.back() == ':')
        label.remove_suffix(1);
    return std::string(label);
}
} // namespace

void storePrinterForm(const PrinterForm& f, const PrinterCatalog& catalog, PrinterConfig& c) {
    storeSelected(catalog.printers, f.printer, &PrinterEntry::driver, c.printerName);
    storeSelected(catalog.resolutions, f.resolution, &ResolutionEntry::name, c.resolution);
    storeSelected(catalog.papers, f.paper, &PaperEntry::name, c.paper);
    c.topMargin = f.topMargin;
    c.leftMargin = f.leftMargin;
    c.scaling = f.scaling;
}

std::optional<std::string> validatePrinterForm(const PrinterForm& f) {
    using namespace printertext;
    if (auto m = checkStorableValue(field(kTopMargin), f.topMargin))
        return m;
    if (auto m = checkStorableValue(field(kLeftMargin), f.leftMargin))
        return m;
    return checkStorableValue(field(kScaling), f.scaling);
}

} // namespace rq
