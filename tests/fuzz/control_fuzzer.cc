// The method sees what goes out of bounds: this target does, once the inputs have
// found their way to it, and its test is passed when it fails.

#include <cstddef>
#include <cstdint>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::vector<uint8_t> table(4);
    if (size > 2 && data[0] == '[' && data[1] == 'A' && data[2] == ']')
        static_cast<volatile uint8_t *>(table.data())[size + 4] = 1;
    return 0;
}
