// Every reader of the tool under fuzzing: the XML helpers, the catalogs, the
// project file, the stored password, each section file, the package file, the
// start-up bitmap, the device's version file, the package key file and the
// spreadsheet file an import merges into a table. Each entry reads the input as
// the tool would, then uses what was read the way the tool does next (writes the
// section back, looks entries up), so that a reader leaving its model inconsistent
// shows up as well.

#include "FuzzSupport.h"

#include "core/ConfigSection.h"
#include "core/FileUtil.h"
#include "core/HmiDeviceCatalog.h"
#include "core/IoDriverCatalog.h"
#include "core/PasswordCodec.h"
#include "core/ProjectFile.h"
#include "core/TextEncoding.h"
#include "core/Xml.h"
#include "core/XmlStream.h"
#include "deploy/cipher/PackageCipher.h"
#include "deploy/cipher/PackageKeys.h"
#include "deploy/logo/ConvertBitmap.h"
#include "deploy/transfer/UpgradePackages.h"
#include "exchange/ProjectExchange.h"
#include "exchange/TableMerge.h"
#include "project/Project.h"
#include "sections/alarm/AlarmSection.h"
#include "sections/datalog/DataLogSection.h"
#include "sections/device/DeviceSection.h"
#include "sections/fbd/FbdSection.h"
#include "sections/history/HistorySection.h"
#include "sections/hmidb/HmiDbSection.h"
#include "sections/hmiwindow/HmiWindowSection.h"
#include "sections/modules/ModulesSection.h"
#include "sections/param/ParamSection.h"
#include "sections/printer/PrinterCatalog.h"
#include "sections/printer/PrinterSection.h"
#include "sections/redundancy/RedundancySection.h"
#include "sections/rtdb/RtdbSection.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace rq::fuzz {

namespace {

std::string_view asText(const uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// The catalogs of the program directory, as the tool holds them while a project
// is read.
HmiDeviceCatalog& hmiCatalog() {
    static HmiDeviceCatalog catalog;
    return catalog;
}
IoDriverCatalog& ioCatalog() {
    static IoDriverCatalog catalog;
    return catalog;
}
void loadCatalogs() {
    const std::string dir = programDirectory();
    if (hmiCatalog().empty())
        hmiCatalog().LoadHmiDeviceCatalog(joinPath(dir, "hmidevice.xml"));
    if (ioCatalog().links().empty())
        ioCatalog().load(joinPath(dir, "iodevdrv.xml"));
}

// --- XML helpers -------------------------------------------------------------

void walkAttributes(const xmlNode* node, int depth) {
    for (; node; node = node->next) {
        if (node->type != XML_ELEMENT_NODE)
            continue;
        for (const xmlAttr* a = node->properties; a; a = a->next) {
            const char* name = reinterpret_cast<const char*>(a->name);
            (void)ReadAttrText(node, name);
            (void)ReadAttrRaw(node, name);
            int32_t value = 0;
            ReadAttrNumber(node, name, value);
            (void)HasAttr(node, name);
        }
        if (depth < 64)
            walkAttributes(node->children, depth + 1);
    }
}

// The children the tree readers see by name and their attribute values, as text.
void treeText(const xmlNode* node, std::string& out) {
    out += reinterpret_cast<const char*>(node->name);
    if (node->type == XML_ELEMENT_NODE)
        for (const xmlAttr* a = node->properties; a; a = a->next)
            out += "|" + ReadAttrText(node, reinterpret_cast<const char*>(a->name));
    out += "{";
    for (const xmlNode* n = node->children; n; n = n->next)
        if (n->type == XML_ELEMENT_NODE || n->type == XML_PI_NODE || n->type == XML_ENTITY_REF_NODE)
            treeText(n, out);
    out += "}";
}

void streamText(XmlStream& s, std::string& out) {
    out += s.name();
    for (std::size_t i = 0; i < s.attributeCount(); ++i)
        out += "|" + s.attr(s.attribute(i).name);
    out += "{";
    for (auto c = s.children(); c.next();)
        streamText(s, out);
    out += "}";
}

// The streaming reader must agree with the tree reader on every input.
void compareStream(const XmlInput& input, bool treeOk, const std::string& treeError,
                   const std::string& tree) {
    std::string error, text;
    const bool ok = readXml(input, "", &error, [&](XmlStream& s) {
        text.clear();
        streamText(s, text);
        return true;
    });
    if (ok != treeOk || (ok ? text != tree : error != treeError)) {
        std::fprintf(stderr, "stream and tree differ: %d/%d [%s] [%s]\n", ok, treeOk, error.c_str(),
                     treeError.c_str());
        std::abort();
    }
}

void runXml(const uint8_t* data, std::size_t size) {
    const std::string path = writeScratchFile("any.xml", data, size);
    {
        XmlDocument doc;
        std::string error, tree;
        const bool ok = doc.load(path, "", &error);
        if (ok) {
            (void)doc.declaredEncoding();
            walkAttributes(doc.root(), 0);
            treeText(doc.root(), tree);
        }
        compareStream(XmlInput::file(path), ok, error, tree);
        compareStream(XmlInput::memory(asText(data, size), path), ok, error, tree);
    }
    {
        XmlDocument doc;
        std::string error;
        if (doc.loadMemory(asText(data, size), "memory.xml", "rtdbs", &error))
            walkAttributes(doc.root(), 0);
    }
    (void)parseDecimal(asText(data, size));
    (void)EscapeXmlAttr(asText(data, size));
}

void seedXml(const std::string& dir) {
    copySeeds(dir, "tests/data/*/*/*.xml");
    copySeeds(dir, "data/examples/demo/*.xml");
}

// --- catalogs ----------------------------------------------------------------

void runHmiDevice(const uint8_t* data, std::size_t size) {
    const std::string path = writeScratchFile("hmidevice.xml", data, size);
    HmiDeviceCatalog catalog;
    if (!catalog.LoadHmiDeviceCatalog(path))
        return;
    for (const HmiDeviceType& type : catalog.entries()) {
        catalog.FindByName(type.name);
        catalog.FindByDisplay(type.display);
    }
}

void runIoDriver(const uint8_t* data, std::size_t size) {
    const std::string path = writeScratchFile("iodevdrv.xml", data, size);
    IoDriverCatalog catalog;
    if (!catalog.load(path))
        return;
    // The device dialogs' look-ups over everything the file named.
    for (const IoLinkKind& link : catalog.links()) {
        catalog.FindLinkKind(link.name);
        catalog.ListDrivers(link.name);
        catalog.DriverNameAt(link.name, 0);
        catalog.DriverNameAt(link.name, static_cast<int>(link.drivers.size()));
        for (const IoDeviceDriver& driver : link.drivers) {
            IoDriverCatalog::DriverDescription(catalog.FindDriver(driver.name));
            catalog.ListDataTypes(driver.name);
            for (const IoProduct* product : catalog.ListProducts(driver.name)) {
                catalog.ProductIndex(driver.name, product->name);
                for (const IoCfgType* cfg : IoDriverCatalog::ListCfgTypes(*product))
                    catalog.CfgTypeDisplay(driver.name, product->name, cfg->code);
            }
            catalog.ProductNameAt(driver.name, 0);
            catalog.ProductNameAt(driver.name, -1);
        }
    }
}

void runPrinterCatalog(const uint8_t* data, std::size_t size) {
    const std::string path = writeScratchFile(PrinterCatalog::kFileName, data, size);
    PrinterCatalog catalog;
    std::string error;
    if (!catalog.load(path, &error))
        return;
    for (const PrinterEntry& p : catalog.printers)
        catalog.indexOfDriver(p.driver);
    for (const ResolutionEntry& r : catalog.resolutions)
        catalog.indexOfResolution(r.name);
    for (const PaperEntry& p : catalog.papers)
        catalog.indexOfPaper(p.name);
}

// Whether a saved file must read back to the same model: no value holds a character
// that the writers put in unescaped (the check reports those), and the input had no
// character references or entities, through which a tab or line break can reach a
// value and come back as a blank.
bool mustReadBack(std::string_view input, const CheckContext& check) {
    if (input.find("&#") != std::string_view::npos ||
        input.find("<!ENTITY") != std::string_view::npos)
        return false;
    for (const std::string& finding : check.findings())
        if (finding.find("written unescaped") != std::string::npos)
            return false;
    return true;
}

[[noreturn]] void roundTripFailed(const char* file, const std::string& why,
                                  const std::string& first, const std::string& second) {
    std::fprintf(stderr, "rqfuzz: %s does not read back: %s\n--- saved\n%s\n--- saved again\n%s\n",
                 file, why.c_str(), first.c_str(), second.c_str());
    std::abort();
}

// --- project file and password -------------------------------------------------

bool sameFields(const ProjectModel& a, const ProjectModel& b) {
    return a.name == b.name && a.description == b.description && a.hmiType == b.hmiType &&
           a.slaveIp == b.slaveIp && a.defines == b.defines && a.libs == b.libs &&
           a.include == b.include && a.libs_linux == b.libs_linux;
}

void runProjectFile(const uint8_t* data, std::size_t size) {
    const std::string path = writeScratchFile("rqrun.xml", data, size);
    ProjectModel project;
    std::string error;
    if (!readProjectFile(path, project, hmiCatalog(), &error))
        return;
    std::string saved;
    writeProjectFile(project, saved);
    const std::string_view input = asText(data, size);
    if (input.find("&#") != std::string_view::npos ||
        input.find("<!ENTITY") != std::string_view::npos)
        return; // a tab or line break in a value comes back as a blank
    // name, description and addr are written as held: '"', '<' or '&' in them makes a
    // file that does not read back, as intended.
    for (const std::string* raw : {&project.name, &project.description, &project.slaveIp})
        if (raw->find_first_of("\"<&") != std::string::npos)
            return;

    // The project file escapes every value: what was read must come back whole. A
    // stored password that deciphers to bytes outside the device code page is made
    // text on the first read; from then on it must stay as it is.
    auto reopen = [&](const ProjectModel& from, ProjectModel& to) {
        std::string text;
        writeProjectFile(from, text);
        const std::string bytes = toDeviceXml(text);
        writeScratchFile("rqrun.xml", reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
        if (!readProjectFile(path, to, hmiCatalog(), &error))
            roundTripFailed("rqrun.xml", error, text, "");
    };
    ProjectModel second, third;
    reopen(project, second);
    if (!sameFields(project, second))
        roundTripFailed("rqrun.xml", "a field changed", saved, "");
    reopen(second, third);
    if (third.downloadPassword != second.downloadPassword)
        roundTripFailed("rqrun.xml", "the download password changed", second.downloadPassword,
                        third.downloadPassword);
}

void seedProjectFile(const std::string& dir) {
    copySeeds(dir, "data/examples/demo/rqrun.xml");
}

void runPassword(const uint8_t* data, std::size_t size) {
    const std::string_view text = asText(data, size);
    if (auto plain = PasswordCodec::unscramble(text))
        (void)PasswordCodec::scramble(*plain);
    (void)base64Decode(text);
}

void seedPassword(const std::string& dir) {
    writeSeed(dir, "empty", PasswordCodec::scramble(""));
    writeSeed(dir, "short", PasswordCodec::scramble("abc"));
    writeSeed(dir, "long", PasswordCodec::scramble(std::string(40, 'p')));
    writeSeed(dir, "base64", base64Encode("not a stored password"));
}

// --- sections --------------------------------------------------------------------

class NoDataCheck : public CheckContext {
public:
    bool hasRealtimeData(std::string_view dbname, std::string_view) const override {
        return dbname.size() % 2 == 0; // both answers occur
    }
};

template <class Section> void runSection(const uint8_t* data, std::size_t size) {
    Section section;
    const std::string path = writeScratchFile(section.fileName(), data, size);
    SilentSink sink;
    ReadContext ctx{sink, &hmiCatalog(), &ioCatalog(), {}};
    // A failed read leaves the section as its rules say; the tool may still show and
    // save it, so everything below runs either way.
    section.read(path, ctx);
    std::string saved;
    section.write(saved);
    (void)section.counts();
    NoDataCheck check;
    section.check(check);
    if (!mustReadBack(asText(data, size), check))
        return;

    // Save as the project does (device code page), reopen, save again.
    const std::string bytes = toDeviceXml(saved);
    writeScratchFile(section.fileName(), reinterpret_cast<const uint8_t*>(bytes.data()),
                     bytes.size());
    Section reopened;
    ReadContext again{sink, &hmiCatalog(), &ioCatalog(), {}};
    if (!reopened.read(path, again))
        roundTripFailed(section.fileName(), again.error, saved, "");
    std::string savedAgain;
    reopened.write(savedAgain);
    if (savedAgain != saved)
        roundTripFailed(section.fileName(), "the second save differs", saved, savedAgain);
}

void runRtdb(const uint8_t* data, std::size_t size) {
    runSection<RtdbSection>(data, size);
    RtdbSection section;
    SilentSink sink;
    ReadContext ctx{sink, &hmiCatalog(), &ioCatalog(), {}};
    section.readMemory(asText(data, size), "rtdb.xml", ctx);
}

template <const char* Name> void seedSection(const std::string& dir) {
    const std::string name = Name;
    copySeeds(dir, "tests/data/" + name + "/*/*.xml");
    copySeeds(dir, "data/examples/demo/" + name + ".xml");
    if (name == "rtdb")
        copySeeds(dir, "data/program/conffile/rtdb.xml");
}

constexpr char kRtdb[] = "rtdb", kHmidb[] = "hmidb", kHmiwindow[] = "hmiwindow",
               kDevice[] = "device", kParam[] = "param", kDatalog[] = "datalog",
               kHistory[] = "history", kAlarm[] = "alarm", kFbd[] = "fbd",
               kRedundancy[] = "redundancy", kPrinter[] = "printer", kModules[] = "modules";

// --- spreadsheet import ----------------------------------------------------------

// The example project, opened once. The first byte of an input picks the table
// (and, with its high bit, whether rows the file lacks are removed); the rest is
// the file. What the merge accepts is made and undone: the section must give its
// exact text back.
Project& demoProject() {
    static Catalogs catalogs;
    static SilentSink sink;
    static Project* project = [] {
        catalogs.loadFrom(programDirectory());
        auto* p = new Project(catalogs, sink);
        std::string error;
        if (!p->doc.open(joinPath(sourceDir(), "data/examples/demo"), &error)) {
            std::fprintf(stderr, "rqfuzz: the example project does not open: %s\n", error.c_str());
            std::abort();
        }
        return p;
    }();
    return *project;
}

void openDemo() {
    demoProject();
}

void runCsv(const uint8_t* data, std::size_t size) {
    if (size == 0)
        return;
    const std::vector<std::string>& tables = tableSectionNames();
    const std::string& section = tables[(data[0] & 0x7F) % tables.size()];
    Project& project = demoProject();
    TableMerge merge =
        mergeSectionText(project, section, asText(data + 1, size - 1), (data[0] & 0x80) != 0);
    if (!merge.step)
        return;
    const int index = tableSectionIndex(section);
    const std::string before = project.doc.sectionText(index);
    merge.step->redo();
    (void)project.doc.sectionText(index);
    merge.step->undo();
    if (project.doc.sectionText(index) != before) {
        std::fprintf(stderr, "rqfuzz: the undo of an import into %s does not give its text back\n",
                     section.c_str());
        std::abort();
    }
}

void seedCsv(const std::string& dir) {
    const std::vector<std::string>& tables = tableSectionNames();
    for (std::size_t t = 0; t < tables.size(); ++t) {
        const std::string exported = exportTable(*makeSectionTable(demoProject(), tables[t]));
        writeSeed(dir, tables[t] + ".csv", std::string(1, static_cast<char>(t)) + exported);
        // The header and the last row only, with the rows it lacks removed.
        const std::size_t header = exported.find("\r\n") + 2;
        const std::size_t last = exported.rfind("\r\n", exported.size() - 3) + 2;
        writeSeed(dir, tables[t] + "-replace.csv",
                  std::string(1, static_cast<char>(t | 0x80)) + exported.substr(0, header) +
                      exported.substr(last));
    }
}

// --- deployment files ----------------------------------------------------------

void runPackage(const uint8_t* data, std::size_t size) {
    const std::string source = writeScratchFile("in.rqp", data, size);
    const std::string target = scratchDir() + "/out.bin";
    DecryptPackage(source, target, std::nullopt);
    DecryptPackage(source, target, std::string("secret"));
    removeScratchFile("out.bin");
}

void seedPackage(const std::string& dir) {
    const std::string content = "a download archive stands here, 45 bytes long";
    writeSeed(scratchDir(), "plain.bin", content);
    const std::string plain = scratchDir() + "/plain.bin";
    EncryptPackage(plain, dir + "/mode0.rqp", 0, std::nullopt);
    EncryptPackage(plain, dir + "/mode1.rqp", 1, std::nullopt);
    EncryptPackage(plain, dir + "/mode2.rqp", 2, std::string("secret"));
    writeSeed(scratchDir(), "plain.bin", "");
    EncryptPackage(plain, dir + "/empty.rqp", 1, std::nullopt);
}

void runBitmap(const uint8_t* data, std::size_t size) {
    const std::string source = writeScratchFile("logo.bmp", data, size);
    const std::string target = scratchDir() + "/logo.bin";
    std::string message;
    ConvertBitmap(source, target, message, 0, 0);
    ConvertBitmap(source, target, message, 4, 3);
    removeScratchFile("logo.bin");
}

// A bottom-up 24-bit bitmap of width x height with rows padded to 4 bytes.
std::string makeBitmap(int width, int height) {
    const int stride = (width * 3 + 3) / 4 * 4;
    const uint32_t pixelBytes = static_cast<uint32_t>(stride * height);
    std::string bmp(54 + pixelBytes, '\0');
    auto put = [&bmp](std::size_t at, uint32_t value, int bytes) {
        for (int i = 0; i < bytes; ++i)
            bmp[at + i] = static_cast<char>(value >> (8 * i));
    };
    bmp[0] = 'B';
    bmp[1] = 'M';
    put(2, static_cast<uint32_t>(bmp.size()), 4);
    put(10, 54, 4);
    put(14, 40, 4);
    put(18, static_cast<uint32_t>(width), 4);
    put(22, static_cast<uint32_t>(height), 4);
    put(26, 1, 2);
    put(28, 24, 2);
    put(34, pixelBytes, 4);
    for (uint32_t i = 0; i < pixelBytes; ++i)
        bmp[54 + i] = static_cast<char>(i * 37);
    return bmp;
}

void seedBitmap(const std::string& dir) {
    writeSeed(dir, "4x3.bmp", makeBitmap(4, 3));
    writeSeed(dir, "5x2.bmp", makeBitmap(5, 2));
    writeSeed(dir, "1x1.bmp", makeBitmap(1, 1));
}

void runVersionFile(const uint8_t* data, std::size_t size) {
    const std::string path = writeScratchFile("version", data, size);
    deviceUpToDate(path, 20261120);
    (void)parseYyyymmdd(std::string(asText(data, size)));
}

void seedVersionFile(const std::string& dir) {
    writeSeed(dir, "current", "Movaro V1.0\n20261120 build 7\n");
    writeSeed(dir, "older", "Movaro V1.0\r\n20250229\r\n");
    writeSeed(dir, "other", "Another runtime\n20261231\n");
}

void runPackageKeys(const uint8_t* data, std::size_t size) {
    PackageKeys keys;
    std::string error;
    parsePackageKeys(asText(data, size), keys, &error);
}

void seedPackageKeys(const std::string& dir) {
    copySeeds(dir, "data/program/conffile/package.keys");
}

void seedHmiDevice(const std::string& dir) {
    copySeeds(dir, "data/program/hmidevice.xml");
}
void seedIoDriver(const std::string& dir) {
    copySeeds(dir, "data/program/iodevdrv.xml");
}
void seedPrinterCatalog(const std::string& dir) {
    copySeeds(dir, "data/program/printerconf.xml");
    copySeeds(dir, "tests/data/printer/catalog/*.xml");
}

const ReaderTarget kReaders[] = {
    {"xml", nullptr, runXml, seedXml},
    {"hmidevice", nullptr, runHmiDevice, seedHmiDevice},
    {"iodevdrv", nullptr, runIoDriver, seedIoDriver},
    {"printercatalog", nullptr, runPrinterCatalog, seedPrinterCatalog},
    {"projectfile", loadCatalogs, runProjectFile, seedProjectFile},
    {"password", nullptr, runPassword, seedPassword},
    {"rtdb", loadCatalogs, runRtdb, seedSection<kRtdb>},
    {"hmidb", loadCatalogs, runSection<HmiDbSection>, seedSection<kHmidb>},
    {"hmiwindow", loadCatalogs, runSection<HmiWindowSection>, seedSection<kHmiwindow>},
    {"device", loadCatalogs, runSection<DeviceSection>, seedSection<kDevice>},
    {"param", loadCatalogs, runSection<ParamSection>, seedSection<kParam>},
    {"datalog", loadCatalogs, runSection<DataLogSection>, seedSection<kDatalog>},
    {"history", loadCatalogs, runSection<HistorySection>, seedSection<kHistory>},
    {"alarm", loadCatalogs, runSection<AlarmSection>, seedSection<kAlarm>},
    {"fbd", loadCatalogs, runSection<FbdSection>, seedSection<kFbd>},
    {"redundancy", loadCatalogs, runSection<RedundancySection>, seedSection<kRedundancy>},
    {"printer", loadCatalogs, runSection<PrinterSection>, seedSection<kPrinter>},
    {"modules", loadCatalogs, runSection<ModulesSection>, seedSection<kModules>},
    {"package", nullptr, runPackage, seedPackage},
    {"bitmap", nullptr, runBitmap, seedBitmap},
    {"versionfile", nullptr, runVersionFile, seedVersionFile},
    {"packagekeys", nullptr, runPackageKeys, seedPackageKeys},
    {"csv", openDemo, runCsv, seedCsv},
};

} // namespace

const ReaderTarget* findReader(std::string_view name) {
    for (const ReaderTarget& target : kReaders)
        if (name == target.name)
            return &target;
    return nullptr;
}

} // namespace rq::fuzz
