#include "core/FileUtil.h"
#include "sections/hmiwindow/HmiWindowEdits.h"

#include <cstdio>

namespace rq {

void NewLayoutFile::remove() {
    if (!ours_)
        return;
    ours_ = false;
    std::string now;
    if (!readRegularFile(path_, now, nullptr) || now != bytes_)
        return; // changed since, or no longer a file: not ours to take away
    if (std::remove(path_.c_str()) != 0) {
        ours_ = true;
        sink_->showMessage("Cannot remove " + path_, MessageIcon::Stop);
    }
}

void NewLayoutFile::restore() {
    if (ours_ || pathExists(path_))
        return;
    std::string error;
    if (writeFileAtomic(path_, bytes_, &error))
        ours_ = true;
    else
        sink_->showMessage("Cannot create " + path_ + ": " + error, MessageIcon::Stop);
}

} // namespace rq
