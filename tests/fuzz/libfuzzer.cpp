// One program for each target: FUZZ_TARGET names the function. What a target throws ends the program, so that the input
// is kept.
#include "tests/fuzz/targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return fuzz::FUZZ_TARGET(data, size);
}
