#pragma once
// The parsing steps that XmlDocument and XmlStream share, so that both refuse the
// same files with the same reasons. Internal to the core's XML readers.

#include <libxml/parser.h>

#include <string>
#include <string_view>

namespace rq {

// Called before every parse: the library version check, errors kept out of
// standard error. Returns the parser options of every read.
int prepareParser();
// "line N: message" of a parser error.
std::string describeXmlError(const xmlError* err);
// The encoding named in the XML declaration at the start of the bytes, or empty.
std::string declarationEncoding(std::string_view head);
// The code page a file without declaration is read in when it is not UTF-8.
const char* fallbackCodePage();
extern const char* const kEntityRefused;
// The reason of a file whose bytes are neither UTF-8 nor the device code page, with
// the line and the byte where they stop being either.
std::string notInEitherCodePage(std::string_view bytes, size_t offset, const char* codePage);

// XmlDocument's whole parse of the bytes, code-page fallback and entity refusal
// included. Gives the document (built only when buildTree; otherwise an empty
// document that only says the bytes are well-formed) or null with the reason.
// *codePage is set to the fallback code page when the bytes were read in it.
// Without `fallback` only the first reading (as declared, else UTF-8) is made.
xmlDoc* parseXmlBytes(std::string_view bytes, const std::string& name, bool buildTree,
                      std::string* reason, const char** codePage, bool fallback = true);

} // namespace rq
