#include "sections/printer/PrinterSection.h"

#include "core/Xml.h"

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

void readConfig(const xmlNode* e, PrinterConfig& c) {
    for (const Field& f : kFields)
        c.*f.member = ReadAttrText(e, f.attribute);
}

} // namespace

bool PrinterSection::read(const std::string& path, ReadContext& ctx) {
    XmlDocument doc;
    if (!doc.load(path, "printer", &ctx.error))
        return false;
    bool seen = false;
    for (const xmlNode* n = doc.root()->children; n; n = n->next) {
        if (!isElement(n, "config"))
            continue;
        if (seen)
            ctx.drop("config", "a second configuration; the last one is kept");
        readConfig(n, config_);
        seen = true;
    }
    return true;
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
