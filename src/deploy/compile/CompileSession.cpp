#include "deploy/compile/CompileSession.h"

#include "core/FileUtil.h"
#include "core/ProjectDocument.h"
#include "core/SectionTable.h"
#include "deploy/compile/CompileCommands.h"

namespace rq {

// Forwards all four runner events to the session.
class CompileSession::Runner : public ProcessRunner {
public:
    explicit Runner(CompileSession& s) : s_(s) {}
    ~Runner() override { Stop(); }

protected:
    void OnStarted(const std::string& line) override { s_.onEvent(0, line); }
    void OnStdout(const std::string& text) override { s_.onEvent(2, text); }
    void OnStderr(const std::string& text) override { s_.onEvent(3, text); }
    void OnFinished() override { s_.onEvent(1, {}); }

private:
    CompileSession& s_;
};

CompileSession::CompileSession(Listener* listener)
    : listener_(listener), runner_(std::make_unique<Runner>(*this)) {}

CompileSession::~CompileSession() {
    runner_.reset();
}

void CompileSession::onEvent(int code, const std::string& text) {
    {
        std::lock_guard lock(m_);
        switch (code) {
        case 0:
            buttonsEnabled_ = false;
            break;
        case 2:
            out_ += text;
            break;
        case 3:
            err_ += text;
            break;
        case 1:
            buttonsEnabled_ = true;
            output_ = out_ + err_;
            if (output_.empty())
                output_ = kDefaultCompileOutput;
            status_ = kCompileCompleteStatus;
            finished_ = true;
            break;
        }
    }
    cv_.notify_all();
    if (listener_)
        listener_->onCompileEvent(code, text);
}

void CompileSession::startCommand(const std::string& line) {
    runner_->Stop();
    {
        std::lock_guard lock(m_);
        out_.clear();
        err_.clear();
        output_.clear();
        finished_ = false;
        status_ = kCompilingStatus;
        lastLine_ = line;
    }
    bool started = runner_->Start(line) == 1;
    std::lock_guard lock(m_);
    started_ = started;
}

std::optional<std::string> CompileSession::compileModule(const std::string& projectDir,
                                                         const ModuleCompileFields& fields) {
    if (projectDir.empty())
        return std::string(kNoProjectDirectoryMessage);
    if (fields.name.empty())
        return std::string("module name is empty,please input module name!");
    if (fields.sources.empty())
        return std::string("source file is empty,please input source name!");
    startCommand(
        moduleCompileCommand(projectDir, fields.name, fields.defines, fields.sources).shellLine());
    return std::nullopt;
}

std::optional<std::string> CompileSession::compileProject(ProjectDocument& document,
                                                          const ProjectCompileFields& fields) {
    ProjectModel& model = document.model();
    if (model.projectDirectory.empty())
        return std::string(kNoProjectDirectoryMessage);
    const std::string dir = model.projectDirectory;
    model.defines = fields.defines;
    model.libs = fields.pcSources;
    model.include = fields.header;
    model.libs_linux = fields.hmiSources;
    std::string error;
    // The toolchain reads what was saved: a project file or header that could not
    // be written stops the compile with the reason, before anything runs.
    if (!document.saveSection(0, dir, &error))
        return "Failed to save document.\n" + joinPath(dir, kSectionFiles[0]) + ": " + error;
    const std::string compileDir = joinPath(dir, "compile");
    makeDirectory(compileDir); // an existing one is fine
    if (!writeUserFuncHeader(dir, fields.header, &error))
        return "Cannot write " + joinPath(compileDir, "userfunc.h") + ": " + error;
    {
        std::lock_guard lock(m_);
        out_.clear();
        err_.clear();
        output_.clear();
        status_ = kCompilingStatus;
    }
    startCommand(projectCompileCommand(dir, fields.defines, fields.pcSources, fields.hmiSources)
                     .shellLine());
    return std::nullopt;
}

std::string CompileSession::status() const {
    std::lock_guard lock(m_);
    return status_;
}

std::string CompileSession::output() const {
    std::lock_guard lock(m_);
    return output_;
}

bool CompileSession::buttonsEnabled() const {
    std::lock_guard lock(m_);
    return buttonsEnabled_;
}

bool CompileSession::finished() const {
    std::lock_guard lock(m_);
    return finished_;
}

bool CompileSession::started() const {
    std::lock_guard lock(m_);
    return started_;
}

bool CompileSession::waitFinished(std::chrono::milliseconds limit) {
    std::unique_lock lock(m_);
    return cv_.wait_for(lock, limit, [this] { return finished_; });
}

int CompileSession::exitCode() const {
    return finished() ? runner_->exitCode() : -1;
}

void CompileSession::stop() {
    runner_->Stop();
}

std::string CompileSession::lastCommandLine() const {
    std::lock_guard lock(m_);
    return lastLine_;
}

} // namespace rq
