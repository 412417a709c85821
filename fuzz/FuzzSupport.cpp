#include "FuzzSupport.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <glob.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rq::fuzz {

namespace {

void removeScratchDir() {
    std::error_code ignored;
    std::filesystem::remove_all(scratchDir(), ignored);
}

bool writeBytes(const std::string& path, const void* data, std::size_t size) {
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (!f)
        return false;
    const bool written = size == 0 || std::fwrite(data, 1, size, f) == size;
    return std::fclose(f) == 0 && written;
}

} // namespace

std::string sourceDir() {
    return RQ_SOURCE_DIR;
}

void useSourceProgramDirectory() {
    // overwrite = 0: a caller's own program directory wins.
    ::setenv("RQPDEV_HOME", (sourceDir() + "/data/program").c_str(), 0);
}

const std::string& scratchDir() {
    static const std::string dir = [] {
        const char* tmp = std::getenv("TMPDIR");
        std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/rqfuzz.XXXXXX";
        if (!::mkdtemp(pattern.data())) {
            std::perror("rqfuzz: cannot create a scratch directory");
            std::abort();
        }
        return pattern;
    }();
    static const bool registered = (std::atexit(removeScratchDir), true);
    (void)registered;
    return dir;
}

std::string writeScratchFile(const std::string& name, const uint8_t* data, std::size_t size) {
    std::string path = scratchDir() + "/" + name;
    if (!writeBytes(path, data, size)) {
        std::perror(("rqfuzz: cannot write " + path).c_str());
        std::abort();
    }
    return path;
}

void removeScratchFile(const std::string& name) {
    ::unlink((scratchDir() + "/" + name).c_str());
}

bool writeSeed(const std::string& dir, const std::string& name, std::string_view bytes) {
    return writeBytes(dir + "/" + name, bytes.data(), bytes.size());
}

int copySeeds(const std::string& dir, const std::string& relativeGlob) {
    glob_t found{};
    const std::string pattern = sourceDir() + "/" + relativeGlob;
    int copied = 0;
    if (::glob(pattern.c_str(), 0, nullptr, &found) == 0) {
        for (std::size_t i = 0; i < found.gl_pathc; ++i) {
            const std::filesystem::path from = found.gl_pathv[i];
            if (!std::filesystem::is_regular_file(from))
                continue;
            // The seed's name keeps its origin: tests/data/rtdb/defaults/input.xml
            // becomes rtdb_defaults_input.xml.
            std::string rel = std::filesystem::relative(from, sourceDir()).string();
            for (const char* prefix : {"tests/data/", "data/examples/", "data/program/"})
                if (rel.rfind(prefix, 0) == 0)
                    rel.erase(0, std::string_view(prefix).size());
            for (char& c : rel)
                if (c == '/')
                    c = '_';
            std::error_code ec;
            std::filesystem::copy_file(from, dir + "/" + rel,
                                       std::filesystem::copy_options::overwrite_existing, ec);
            if (!ec)
                ++copied;
        }
    }
    ::globfree(&found);
    return copied;
}

void startTarget(const ReaderTarget& target) {
    useSourceProgramDirectory();
    if (const char* seedDir = std::getenv("RQ_FUZZ_SEED_DIR"); seedDir && *seedDir) {
        std::filesystem::create_directories(seedDir);
        if (target.setUp)
            target.setUp();
        target.writeSeeds(seedDir);
        std::exit(0);
    }
    if (target.setUp)
        target.setUp();
}

} // namespace rq::fuzz
