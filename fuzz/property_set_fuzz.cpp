// Feeds arbitrary text (the bytes as UTF-16 units) to the property set reader.
#include <cstddef>
#include <cstdint>

#include <lodeqdb/identification/CreatorKind.h>
#include <lodeqdb/identification/PropertySet.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    wstring text;
    for (size_t i = 0; i + 1 < size; i += 2)
        text.push_back(static_cast<char16_t>(data[i] | data[i + 1] << 8));

    LodeQDBUtil::Guid guid;
    LodeQDBUtil::ParseGuidText(text, guid);
    LodeQDBUtil::PropertySetFormatId(text, guid);
    LodeQDBUtil::PropertyValue value;
    LodeQDBUtil::ParsePropertyValue(text, value);
    LodeQDBUtil::PropertyKey number;
    number.SetNumber(LodeQDBUtil::kCreatorNamePropertyId);
    LodeQDBUtil::ReadPropertySetProperty(LodeQDBUtil::kSummaryFormatId, text, number, value);
    LodeQDBUtil::PropertyKey name;
    name.SetText(u"Creator");
    LodeQDBUtil::ReadPropertySetProperty(LodeQDBUtil::kSummaryFormatId, text, name, value);
    return 0;
}
