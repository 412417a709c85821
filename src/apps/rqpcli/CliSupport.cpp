#include "CliSupport.h"

#include "Command.h"
#include "core/FileUtil.h"

#include <cstdio>
#include <iostream>
#include <unistd.h>

namespace rqcli {

void ConsoleSink::showMessage(const std::string& text, rq::MessageIcon) {
    std::cerr << text << "\n";
}

bool ConsoleSink::askOkCancel(const std::string& text) {
    std::cerr << text << " [OK]\n";
    return true;
}

bool ConsoleSink::askYesNo(const std::string& text, rq::MessageIcon, bool defaultNo) {
    std::cerr << text << (defaultNo ? " [No]\n" : " [Yes]\n");
    return !defaultNo;
}

TerminalProgress::TerminalProgress(bool quiet)
    : enabled_(!quiet && ::isatty(STDOUT_FILENO) && ::isatty(STDERR_FILENO)) {}

TerminalProgress::~TerminalProgress() {
    finish();
}

std::string TerminalProgress::line(const rq::TransferProgress& p, int width) {
    const int percent = rq::progressPercent(p);
    const int filled = percent * width / 100;
    std::string bar = "[" + std::string(std::size_t(filled), '#') +
                      std::string(std::size_t(width - filled), ' ') + "]";
    char pct[8];
    std::snprintf(pct, sizeof pct, "%4d%%", percent);
    return bar + pct + " " + rq::formatProgress(p);
}

void TerminalProgress::onProgress(const rq::TransferProgress& p) {
    if (!enabled_)
        return;
    // Carriage return, the line, and the rest of an earlier, longer line cleared.
    std::fprintf(stderr, "\r%s\033[K", line(p).c_str());
    std::fflush(stderr);
    open_ = true;
}

void TerminalProgress::finish() {
    if (open_) {
        std::fputc('\n', stderr);
        std::fflush(stderr);
        open_ = false;
    }
}

const rq::Catalogs& catalogs() {
    static rq::Catalogs c = [] {
        rq::Catalogs loaded;
        loaded.loadFrom(rq::programDirectory());
        return loaded;
    }();
    return c;
}

ConsoleSink& consoleSink() {
    static ConsoleSink sink;
    return sink;
}

std::unique_ptr<rq::Project> openProject(const std::string& dir, rq::OpenPurpose purpose,
                                         bool quiet) {
    auto project = std::make_unique<rq::Project>(catalogs(), consoleSink());
    std::string error;
    if (!project->doc.open(dir, &error, purpose)) {
        fail("cannot open project: " + error);
        return nullptr;
    }
    if (!quiet)
        for (const auto& line : project->doc.unreadableFiles())
            fail(line);
    return project;
}

bool saveProject(rq::Project& project) {
    rq::SaveReport report = project.doc.saveAll();
    for (const auto& line : report.failures)
        fail("cannot save " + line);
    for (const auto& line : report.kept)
        fail("not saved: " + line);
    return report.complete();
}

} // namespace rqcli
