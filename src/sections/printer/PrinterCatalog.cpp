#include "sections/printer/PrinterCatalog.h"

#include "core/FileUtil.h"
#include "core/Xml.h"

namespace rq {

namespace {

class CatalogReader {
public:
    explicit CatalogReader(PrinterCatalog& c) : c_(c) {}

    void printerconf(const xmlNode* root) {
        for (const xmlNode* n = root->children; n; n = n->next) {
            if (isElement(n, "printers"))
                printers(n);
            else if (isElement(n, "resolutions"))
                resolutions(n);
            else if (isElement(n, "papers"))
                papers(n);
        }
    }

private:
    void printers(const xmlNode* e) {
        for (const xmlNode* n = e->children; n; n = n->next)
            if (isElement(n, "printer"))
                c_.printers.push_back({ReadAttrText(n, "name"), ReadAttrText(n, "driver")});
    }
    void resolutions(const xmlNode* e) {
        for (const xmlNode* n = e->children; n; n = n->next)
            if (isElement(n, "resolution"))
                c_.resolutions.push_back({ReadAttrText(n, "name"), ReadAttrText(n, "description")});
    }
    void papers(const xmlNode* e) {
        for (const xmlNode* n = e->children; n; n = n->next)
            if (isElement(n, "paper"))
                c_.papers.push_back({ReadAttrText(n, "name"), ReadAttrText(n, "description")});
    }

    PrinterCatalog& c_;
};

template <typename List, typename Key>
int indexOf(const List& list, Key key, std::string_view text) {
    for (std::size_t i = 0; i < list.size(); ++i)
        if (list[i].*key == text)
            return static_cast<int>(i);
    return -1;
}

} // namespace

bool PrinterCatalog::load(const std::string& path, std::string* error) {
    printers.clear();
    resolutions.clear();
    papers.clear();
    XmlDocument doc;
    if (!doc.load(path, "printerconf", error))
        return false;
    CatalogReader(*this).printerconf(doc.root());
    return true;
}

bool PrinterCatalog::loadFromProgramDirectory(std::string* error) {
    return load(joinPath(programDirectory(), kFileName), error);
}

int PrinterCatalog::indexOfDriver(std::string_view driver) const {
    return indexOf(printers, &PrinterEntry::driver, driver);
}

int PrinterCatalog::indexOfResolution(std::string_view name) const {
    return indexOf(resolutions, &ResolutionEntry::name, name);
}

int PrinterCatalog::indexOfPaper(std::string_view name) const {
    return indexOf(papers, &PaperEntry::name, name);
}

} // namespace rq
