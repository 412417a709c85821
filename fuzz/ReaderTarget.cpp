// The entry points of one reader's fuzz target; RQ_FUZZ_READER names the reader.

#include "FuzzSupport.h"

#include <cstdio>
#include <cstdlib>

namespace {
const rq::fuzz::ReaderTarget* target = nullptr;
}

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    target = rq::fuzz::findReader(RQ_FUZZ_READER);
    if (!target) {
        std::fprintf(stderr, "rqfuzz: no reader named %s\n", RQ_FUZZ_READER);
        std::abort();
    }
    rq::fuzz::startTarget(*target);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    target->run(data, size);
    return 0;
}
