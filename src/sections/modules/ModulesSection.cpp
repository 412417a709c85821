#include "sections/modules/ModulesSection.h"

#include "core/SectionRead.h"
#include "core/Xml.h"

namespace rq {

namespace {

// Appends the value through EscapeXmlAttr; values without a special character
// (nearly all) are appended as they are, without a temporary copy.
void appendEscaped(std::string& out, std::string_view value) {
    if (value.find_first_of("&\"<>'") == std::string_view::npos)
        out += value;
    else
        out += EscapeXmlAttr(value);
}

void module(const XmlStream& s, std::vector<UserModule>& modules, ReadContext& ctx) {
    UserModule m;
    m.name = s.attr("name");
    if (m.name.empty()) {
        ctx.drop("module", "no name; left out");
        return;
    }
    m.defines = s.attr("defines");
    m.srcfiles = s.attr("srcfiles");
    m.params = s.attr("params");
    m.enable = s.attrView("enable") == "1";
    modules.push_back(std::move(m));
}

} // namespace

bool ModulesSection::read(const std::string& path, ReadContext& ctx) {
    return readSectionXml(
        XmlInput::file(path), "modules", ctx, [this] { modules_.clear(); },
        [this](XmlStream& s, ReadContext& c) {
            for (auto n = s.children(); n.next();) {
                if (s.is("module"))
                    module(s, modules_, c);
            }
            return true;
        });
}

void ModulesSection::write(std::string& out) const {
    out += "<?xml version=\"1.0\" ?>\r\n<modules>\r\n";
    for (const UserModule& m : modules_) {
        out += "\t<module name=\"";
        out += m.name;
        out += "\" defines=\"";
        appendEscaped(out, m.defines);
        out += "\" srcfiles=\"";
        appendEscaped(out, m.srcfiles);
        out += "\" params=\"";
        appendEscaped(out, m.params);
        out += "\" enable=\"";
        out += m.enable ? '1' : '0';
        out += "\"/>\r\n";
    }
    out += "</modules>\r\n";
}

std::vector<std::pair<std::string, std::size_t>> ModulesSection::counts() const {
    return {{"modules", modules_.size()}};
}

void ModulesSection::check(CheckContext& ctx) const {
    // Only the name is written as it stands; the other texts are escaped.
    for (const UserModule& m : modules_)
        ctx.rawValue("modules.xml: module \"" + m.name + "\" name", m.name);
}

} // namespace rq
