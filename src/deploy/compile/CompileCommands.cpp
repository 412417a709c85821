#include "deploy/compile/CompileCommands.h"

#include "core/FileUtil.h"
#include "deploy/process/ProcessRunner.h"

namespace rq {

std::string replacePrjDir(const std::string& text, const std::string& projectDir) {
    const std::string token = kPrjDirToken;
    std::string out;
    std::size_t pos = 0;
    for (;;) {
        std::size_t hit = text.find(token, pos);
        if (hit == std::string::npos)
            break;
        out.append(text, pos, hit - pos);
        out += projectDir;
        pos = hit + token.size();
    }
    out.append(text, pos, std::string::npos);
    return out;
}

std::string ToolCommand::shellLine() const {
    std::string line;
    if (!variables.empty()) {
        line = "export";
        for (const auto& [name, value] : variables)
            line += " " + name + "=" + shellQuote(value);
        line += " && ";
    }
    line += script;
    for (const auto& a : arguments)
        line += " " + shellQuote(a);
    return line;
}

ToolCommand moduleCompileCommand(const std::string& projectDir, const std::string& moduleName,
                                 const std::string& defines, const std::string& sources) {
    ToolCommand c;
    c.variables = {{"PRJ_DIR", projectDir},
                   {"MdlName", moduleName},
                   {"CFLAGS", defines},
                   {"LDFLAGS", " " + replacePrjDir(sources, projectDir)}};
    c.script = "./RqGenMdl.sh";
    return c;
}

ToolCommand projectCompileCommand(const std::string& projectDir, const std::string& defines,
                                  const std::string& pcSources, const std::string& hmiSources) {
    ToolCommand c;
    c.variables = {{"PRJ_DIR", projectDir},
                   {"CFLAGS", defines},
                   {"LDFLAGS", " " + replacePrjDir(pcSources, projectDir)},
                   {"LDFLAGS_LINUX", " " + replacePrjDir(hmiSources, projectDir)}};
    c.script = "./RqGenDll.sh";
    c.arguments = {projectDir};
    return c;
}

std::string userFuncHeaderText(const std::string& headerField, const std::string& projectDir) {
    if (headerField.empty())
        return {};
    std::string text = replacePrjDir(headerField, projectDir);
    if (text.front() == '"')
        return "#include" + text + "\n";
    return "#include\"" + text + "\"\n";
}

bool writeUserFuncHeader(const std::string& projectDir, const std::string& headerField,
                         std::string* error) {
    return writeFileAtomic(joinPath(joinPath(projectDir, "compile"), "userfunc.h"),
                           userFuncHeaderText(headerField, projectDir), error);
}

} // namespace rq
