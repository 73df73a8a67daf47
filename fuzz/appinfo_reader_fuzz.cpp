// Feeds arbitrary files to the header reader and the classification by header.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include <lodeqdb/identification/AppInfo.h>
#include <lodeqdb/identification/CreatorKind.h>
#include <lodeqdb/identification/PropertySet.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/platform/LodeExceptions.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // The reader reads files, so each input becomes one.
    static const std::string path = "/tmp/lodeqdb-appinfo-fuzz-" + std::to_string(getpid());
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) return 0;
    std::fwrite(data, 1, size, file);
    std::fclose(file);
    const wstring wide = LodeUtil::Utf16FromUtf8(path);

    LodeQDBUtil::AppInfoMap entries;
    LodeQDBUtil::ReadAppInfoMap(wide.c_str(), entries);
    LodeQDBUtil::PropertyKey key;
    key.SetNumber(LodeQDBUtil::kCreatorNamePropertyId);
    LodeQDBUtil::PropertyValue value;
    if (LodeQDBUtil::GetAppInfoProperty(entries, LodeQDBUtil::kSummaryFormatId, key, value) &&
        value.GetTag() == LodeQDBUtil::PropertyValue::ValueText)
        (void)value.Text().size();
    try {
        LodeQDBUtil::GetPlwFileTypeByHeader(wide);
    } catch (const lode::LodeException&) {
        // Files without application information or owner are refused by exception.
    }
    return 0;
}
