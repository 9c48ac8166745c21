#include "zar_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return fuzz::runZar(data, size, 0xEFB04FA7);
}
