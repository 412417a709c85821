#pragma once
// What the commands of rqpcli share: the catalogs beside the program, a message
// sink that prints, and opening a project.

#include "core/Catalogs.h"
#include "core/MessageSink.h"
#include "deploy/transfer/TransferJob.h"
#include "project/Project.h"

#include <memory>
#include <string>

namespace rqcli {

// Prints every message to standard error, one line each; questions take their
// default answer.
class ConsoleSink : public rq::MessageSink {
public:
    void showMessage(const std::string& text, rq::MessageIcon icon) override;
    bool askOkCancel(const std::string& text) override;
    bool askYesNo(const std::string& text, rq::MessageIcon icon, bool defaultNo) override;
};

// Draws a transfer's progress as one line on standard error, redrawn in place:
// "[#########           ]  45% NAME: 12.0 MiB of 26.5 MiB, 80.1 MiB/s". Draws
// nothing when standard output or standard error is not a terminal, or when
// `quiet` is set. The line is ended before anything else is printed.
class TerminalProgress : public rq::TransferListener {
public:
    explicit TerminalProgress(bool quiet);
    ~TerminalProgress() override;
    bool drawing() const { return enabled_; }
    void onProgress(const rq::TransferProgress& progress) override;
    // Ends the progress line (before a message is printed).
    void finish();
    // The line drawn for `progress`, `width` characters of bar.
    static std::string line(const rq::TransferProgress& progress, int width = 24);

private:
    bool enabled_;
    bool open_ = false;
};

// The catalogs of the program directory, loaded once.
const rq::Catalogs& catalogs();
ConsoleSink& consoleSink();

// Opens the project in `dir`; on failure prints "cannot open project: FILE: reason"
// and returns null. An optional file that could not be read is printed as
// "FILE: reason" unless `quiet` (the caller lists it itself). Read-only commands
// open for rq::OpenPurpose::Inspect, which writes nothing.
std::unique_ptr<rq::Project> openProject(const std::string& dir,
                                         rq::OpenPurpose purpose = rq::OpenPurpose::Edit,
                                         bool quiet = false);

// Saves all files; prints one line per file that could not be written and per file
// left as it was because it could not be read. True when every file was written.
bool saveProject(rq::Project& project);

} // namespace rqcli
