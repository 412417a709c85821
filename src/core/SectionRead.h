#pragma once
// How a section reads its file with XmlStream. A streaming read can fail late (the
// end of the file is malformed) or run twice (the file is in the device code
// page), so what the reader shows and drops is held back: the messages and drops
// of a read that fails are never seen, and those of a read that succeeds are
// handed on in their order once the whole file has been read well.
//
//     bool FooSection::read(const std::string& path, ReadContext& ctx) {
//         return readSectionXml(XmlInput::file(path), "foos", ctx, [this] { clear(); },
//                               [this](XmlStream& s, ReadContext& c) {
//                                   FooReader(*this, c).read(s); // c.sink, c.drop(...)
//                                   return true;                 // false: c.error set
//                               });
//     }
// `clear` runs before every attempt and after a failure, so a failed read leaves
// the section empty.

#include "core/ConfigSection.h"
#include "core/XmlStream.h"

#include <functional>
#include <string_view>

namespace rq {

bool readSectionXml(const XmlInput& input, std::string_view expectedRoot, ReadContext& ctx,
                    const std::function<void()>& clear,
                    const std::function<bool(XmlStream&, ReadContext&)>& read);

} // namespace rq
