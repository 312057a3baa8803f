// The libFuzzer entry of one target, chosen at build time by VELLUM_FUZZ_TARGET.
#include "FuzzTargets.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const VellumFuzz::Target* const target = VellumFuzz::findTarget(VELLUM_FUZZ_TARGET);
    if (target == nullptr) {
        std::fprintf(stderr, "no fuzz target named %s\n", VELLUM_FUZZ_TARGET);
        std::abort();
    }
    target->run(data, size);
    return 0;
}
