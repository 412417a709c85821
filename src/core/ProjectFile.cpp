#include "core/ProjectFile.h"

#include "core/HmiDeviceCatalog.h"
#include "core/PasswordCodec.h"
#include "core/TextEncoding.h"
#include "core/Xml.h"
#include "core/XmlStream.h"

namespace rq {

void writeProjectFile(const ProjectModel& p, std::string& out) {
    out += "<?xml version=\"1.0\" ?>\r\n";
    out += "<rqrun name=\"";
    out += p.name;
    out += "\" description=\"";
    out += p.description;
    out += '"';
    if (!p.downloadPassword.empty()) {
        out += " downloadpwd=\"";
        out += PasswordCodec::scramble(toDeviceBytes(p.downloadPassword));
        out += '"';
    }
    if (p.hmiType) {
        out += " devicename=\"";
        out += p.hmiType->name;
        out += '"';
    }
    out += ">\r\n";
    out += "\t<slaveip addr=\"";
    out += p.slaveIp;
    out += "\"/>\r\n";
    out += "\t<compile defines=\"";
    out += EscapeXmlAttr(p.defines);
    out += "\" libs=\"";
    out += EscapeXmlAttr(p.libs);
    out += "\" libs_linux=\"";
    out += EscapeXmlAttr(p.libs_linux);
    out += "\" include=\"";
    out += EscapeXmlAttr(p.include);
    out += "\"/>\r\n";
    out += "</rqrun>\r\n";
}

namespace {

void compile(const XmlStream& s, ProjectModel& p) {
    p.defines = s.attr("defines");
    p.libs = s.attr("libs");
    p.include = s.attr("include");
    p.libs_linux = s.attr("libs_linux");
    if (p.libs_linux.empty())
        p.libs_linux = p.libs;
}

bool readRqrun(XmlStream& s, ProjectModel& p, const HmiDeviceCatalog& catalog, std::string* error) {
    const std::string_view password = s.attrView("downloadpwd");
    if (!password.empty()) {
        auto plain = PasswordCodec::unscramble(std::string(password));
        if (!plain) {
            if (error)
                *error = "the download password (downloadpwd) is not a scrambled password";
            return false;
        }
        p.downloadPassword = fromDeviceBytes(*plain);
    }
    p.name = s.attr("name");
    p.description = s.attr("description");
    p.hmiType = catalog.FindByName(s.attrView("devicename"));
    p.slaveIp.clear();
    p.defines.clear();
    p.libs.clear();
    p.include.clear();
    p.libs_linux.clear();
    for (auto c = s.children(); c.next();) {
        if (s.is("slaveip"))
            p.slaveIp = s.attr("addr");
        else if (s.is("compile"))
            compile(s, p);
    }
    return true;
}

} // namespace

bool readProjectFile(const std::string& path, ProjectModel& p, const HmiDeviceCatalog& catalog,
                     std::string* error) {
    return readXml(XmlInput::file(path), "rqrun", error,
                   [&](XmlStream& s) { return readRqrun(s, p, catalog, error); });
}

} // namespace rq
