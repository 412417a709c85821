#include "core/SectionRead.h"

#include "core/RecordingSink.h"

namespace rq {

bool readSectionXml(const XmlInput& input, std::string_view expectedRoot, ReadContext& ctx,
                    const std::function<void()>& clear,
                    const std::function<bool(XmlStream&, ReadContext&)>& read) {
    clear();
    RecordingSink messages;
    ReadContext held{messages, ctx.hmiCatalog, ctx.ioCatalog, {}};
    const bool ok = readXml(input, expectedRoot, &ctx.error, [&](XmlStream& s) {
        clear();
        messages.clear();
        held.dropped.clear();
        held.error.clear();
        if (read(s, held))
            return true;
        ctx.error = held.error;
        return false;
    });
    if (!ok) {
        clear();
        return false;
    }
    messages.replayTo(ctx.sink);
    for (DroppedRecord& d : held.dropped)
        ctx.dropped.push_back(std::move(d));
    return true;
}

} // namespace rq
