#include "core/ProjectFile.h"

#include "core/HmiDeviceCatalog.h"
#include "core/PasswordCodec.h"
#include "core/TextEncoding.h"
#include "core/Xml.h"

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

void compile(const xmlNode* el, ProjectModel& p) {
    p.defines = ReadAttrText(el, "defines");
    p.libs = ReadAttrText(el, "libs");
    p.include = ReadAttrText(el, "include");
    p.libs_linux = ReadAttrText(el, "libs_linux");
    if (p.libs_linux.empty())
        p.libs_linux = p.libs;
}

} // namespace

bool readProjectFile(const std::string& path, ProjectModel& p, const HmiDeviceCatalog& catalog,
                     std::string* error) {
    XmlDocument doc;
    if (!doc.load(path, "rqrun", error))
        return false;
    const xmlNode* root = doc.root();
    std::string password = ReadAttrText(root, "downloadpwd");
    if (!password.empty()) {
        auto plain = PasswordCodec::unscramble(password);
        if (!plain) {
            if (error)
                *error = "the download password (downloadpwd) is not a scrambled password";
            return false;
        }
        p.downloadPassword = fromDeviceBytes(*plain);
    }
    p.name = ReadAttrText(root, "name");
    p.description = ReadAttrText(root, "description");
    p.hmiType = catalog.FindByName(ReadAttrText(root, "devicename"));
    p.slaveIp.clear();
    p.defines.clear();
    p.libs.clear();
    p.include.clear();
    p.libs_linux.clear();
    for (const xmlNode* n = root->children; n; n = n->next) {
        if (isElement(n, "slaveip"))
            p.slaveIp = ReadAttrText(n, "addr");
        else if (isElement(n, "compile"))
            compile(n, p);
    }
    return true;
}

} // namespace rq
