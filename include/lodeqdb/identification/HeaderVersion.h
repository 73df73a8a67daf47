// The version signature in the first 128 bytes of a native drawing file, and where the
// file's application information may begin.
//
//   uint32_t scanStart = 0;
//   if (LodeQDBUtil::ReadFileVersionSignature(path, scanStart) >= 4) { /* look behind it */ }
#pragma once

#include <cstdint>

namespace LodeQDBUtil {

/// The generation a signature stands for; 0 for an unknown signature or a file that can't be
/// read. Codes from 4 on have an application information section.
enum HeaderVersionCode : int {
    HeaderVersionUnknown = 0,
    HeaderVersionPW1012 = 1,
    HeaderVersionPW1014 = 2,
    HeaderVersionPW1015 = 3,
    HeaderVersionPW1018 = 4,
    HeaderVersionPW1021 = 5,
    HeaderVersionPW1024 = 6,
    HeaderVersionPW1027 = 7,
    HeaderVersionPW1032 = 8,
};

/// The first code whose files carry an application information section.
inline constexpr int kFirstCodeWithAppInfo = HeaderVersionPW1018;

/// Reads the 128 header bytes of `path`: the signature's code, and for codes from 4 on the
/// scan start (the value at offset 48, or when that is 0 the larger of those at 44 and 13);
/// `scanStart` is 0 otherwise.
int ReadFileVersionSignature(const char16_t* path, uint32_t& scanStart);

}  // namespace LodeQDBUtil
