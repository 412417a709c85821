#include "sections/redundancy/RedundancyEditor.h"

#include <utility>

namespace rq {

ReplaceRedundancyConfig::ReplaceRedundancyConfig(RedundancySection& s, RedundancyConfig config)
    : EditCommand(redundancytext::kStepName, kRedundancySectionIndex), s_(s),
      other_(std::move(config)) {}

void ReplaceRedundancyConfig::redo() {
    std::swap(s_.config(), other_);
}

void ReplaceRedundancyConfig::undo() {
    std::swap(s_.config(), other_);
}

} // namespace rq
