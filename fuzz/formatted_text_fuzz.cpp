// Feeds arbitrary text (the bytes as UTF-16 units) to the stripper of formatted text, and
// requires that escaped text strips back to itself.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include <lodeqdb/toolkit/core/PwStringBuffer.h>
#include <lodeqdb/toolkit/table/PwDbFormattedText.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // Exactly as long as the input: the terminating zero is the last unit, so that a read past
    // it is a read past the allocation, which the sanitizer reports.
    std::vector<char16_t> text;
    for (size_t i = 0; i + 1 < size; i += 2) {
        text.push_back(static_cast<char16_t>(data[i] | data[i + 1] << 8));
    }
    text.push_back(u'\0');

    char16_t* plain = pwdbStripMTextFormatting(text.data(), PwDbObjectId(), 0);
    if (plain == nullptr) std::abort();
    const wstring expected = pwdbPlainText(text.data());
    if (expected != plain) std::abort();
    pwutDelBuffer(plain);

    // What a reader saw, stored escaped, must read back unchanged.
    const wstring seen(text.data());
    if (pwdbPlainText(pwdbEscapeFormattedText(seen).c_str()) != seen) std::abort();
    return 0;
}
