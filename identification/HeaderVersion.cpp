// Reading the version signature and the section offsets from a drawing file's header.
#include <lodeqdb/identification/HeaderVersion.h>

#include <algorithm>
#include <cstring>

#include "identification/HeaderFile.h"
#include <lodeqdb/lodeutil/ByteOrder.h>

namespace LodeQDBUtil {

namespace {

struct Signature {
    char text[7];
    int code;
};

// Tested in this order. "PW701a" is a signature of its own with the code of "PW1021".
constexpr Signature kSignatures[] = {
    {"PW1012", HeaderVersionPW1012}, {"PW1014", HeaderVersionPW1014},
    {"PW1015", HeaderVersionPW1015}, {"PW1018", HeaderVersionPW1018},
    {"PW1021", HeaderVersionPW1021}, {"PW701a", HeaderVersionPW1021},
    {"PW1024", HeaderVersionPW1024}, {"PW1027", HeaderVersionPW1027},
    {"PW1032", HeaderVersionPW1032},
};

constexpr size_t kHeaderSize = 128;

}  // namespace

int ParseFileVersionSignature(const unsigned char* header, uint32_t& scanStart) {
    scanStart = 0;
    for (const Signature& signature : kSignatures) {
        if (std::memcmp(header, signature.text, 6) != 0) continue;
        if (signature.code >= kFirstCodeWithAppInfo) {
            scanStart = LodeUtil::LittleEndian32(header + 48);
            if (scanStart == 0)
                scanStart = std::max(LodeUtil::LittleEndian32(header + 44), LodeUtil::LittleEndian32(header + 13));
        }
        return signature.code;
    }
    return HeaderVersionUnknown;
}

int ReadFileVersionSignature(const char16_t* path, uint32_t& scanStart) {
    scanStart = 0;
    const HeaderFile file = OpenHeaderFile(path);
    // Zeroed first: a file shorter than the header reads as zeros behind its end.
    unsigned char header[kHeaderSize] = {};
    uint32_t got = 0;
    if (file.openStatus() != Plotwright::StatusOk || !file.readFromFile(header, kHeaderSize, got))
        return HeaderVersionUnknown;
    return ParseFileVersionSignature(header, scanStart);
}

}  // namespace LodeQDBUtil
