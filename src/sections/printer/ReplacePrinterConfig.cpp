#include "sections/printer/PrinterEditor.h"

#include <utility>

namespace rq {

ReplacePrinterConfig::ReplacePrinterConfig(PrinterSection& s, PrinterConfig config)
    : EditCommand(printertext::kStepName, kPrinterSectionIndex), s_(s), other_(std::move(config)) {}

void ReplacePrinterConfig::redo() {
    std::swap(s_.config(), other_);
}

void ReplacePrinterConfig::undo() {
    std::swap(s_.config(), other_);
}

} // namespace rq
