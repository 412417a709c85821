#include "sections/printer/PrinterSection.h"

#include "core/SectionRead.h"

namespace rq {

namespace {

struct Field {
    const char* attribute;
    std::string PrinterConfig::*member;
};

// The attributes of `config` in the order they are written.
constexpr Field kFields[] = {
    {"printer_name", &PrinterConfig::printerName},
    {"resolution", &PrinterConfig::resolution},
    {"paper", &PrinterConfig::paper},
    {"top_margin", &PrinterConfig::topMargin},
    {"left_margin", &PrinterConfig::leftMargin},
    {"scaling", &PrinterConfig::scaling},
};

void readConfig(const XmlStream& s, PrinterConfig& c) {
    for (const Field& f : kFields)
        c.*f.member = s.attr(f.attribute);
}

} // namespace

// A file without a config keeps the configuration the section held, and so does a
// file that cannot be read.
bool PrinterSection::read(const std::string& path, ReadContext& ctx) {
    const PrinterConfig before = config_;
    return readSectionXml(
        XmlInput::file(path), "printer", ctx, [&] { config_ = before; },
        [this](XmlStream& s, ReadContext& c) {
            bool seen = false;
            for (auto n = s.children(); n.next();) {
                if (!s.is("config"))
                    continue;
                if (seen)
                    c.drop("config", "a second configuration; the last one is kept");
                readConfig(s, config_);
                seen = true;
            }
            return true;
        });
}

void PrinterSection::write(std::string& out) const {
    out += "<?xml version=\"1.0\" ?>\r\n<printer>\r\n\t<config";
    for (const Field& f : kFields) {
        out += ' ';
        out += f.attribute;
        out += "=\"";
        out += config_.*f.member;
        out += '"';
    }
    out += "/>\r\n</printer>\r\n";
}

std::vector<std::pair<std::string, std::size_t>> PrinterSection::counts() const {
    return {{"config", 1}};
}

void PrinterSection::check(CheckContext& ctx) const {
    for (const Field& f : kFields)
        ctx.rawValue(std::string("printer.xml: config ") + f.attribute, config_.*f.member);
}

} // namespace rq
