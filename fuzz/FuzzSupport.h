#pragma once
// What the fuzz targets share: a scratch directory per process, the bytes of one
// input written to a file there (the readers take paths), the program directory of
// the source tree (catalogs, system database, development package keys), and the
// table of readers with their seed inputs.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace rq::fuzz {

// The source tree this build comes from.
std::string sourceDir();

// Points RQPDEV_HOME at the source tree's data/program unless it is set already.
void useSourceProgramDirectory();

// A directory of this process, created on first use and removed at exit.
const std::string& scratchDir();
// scratchDir()/name holding exactly the bytes; aborts when it cannot be written (a
// fuzz run on a full disk is no finding).
std::string writeScratchFile(const std::string& name, const uint8_t* data, std::size_t size);
void removeScratchFile(const std::string& name);

// Writes `bytes` to dir/name; false when it cannot.
bool writeSeed(const std::string& dir, const std::string& name, std::string_view bytes);
// Copies every regular file of the source tree matching `relativeGlob` (a path
// relative to the source tree with '*' in its last two parts at most) into dir.
// Returns the number copied.
int copySeeds(const std::string& dir, const std::string& relativeGlob);

// One reader under fuzzing.
struct ReaderTarget {
    const char* name;
    void (*setUp)();                                    // once per process, may be null
    void (*run)(const uint8_t* data, std::size_t size); // one input
    void (*writeSeeds)(const std::string& dir);         // the seed corpus
};

// nullptr when no reader has that name.
const ReaderTarget* findReader(std::string_view name);

// The shared start of every target: when RQ_FUZZ_SEED_DIR names a directory the
// target writes its seeds there and the process ends; otherwise setUp runs.
void startTarget(const ReaderTarget& target);

} // namespace rq::fuzz
