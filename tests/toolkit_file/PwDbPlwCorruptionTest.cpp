// The native file codec against damaged and hostile input: every flipped byte, every
// truncation, lying lengths and counts behind checksums that hold, and random bytes.
#include "toolkit/file/PwDbPlwCodec.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "PwDbImageTestSupport.h"

namespace {

using Item = PwDbMemoryFiler::Item;
using pwdbfiletest::Le;
using pwdbfiletest::PutLe;
using pwdbfiletest::Reseal;
using pwdbfiletest::Sections;
using pwdbfiletest::SectionSpan;
using pwdbfiletest::TestCrc;

PwDbDrawingImage SmallImage() {
    PwDbDrawingImage image;
    image.appInfo = {{kPwDbOwnerGuidKey, u"ab"}};
    image.preview = PwDbPreviewImage{1, 1, {0xFF112233}};
    PwDbObjectRecord record;
    record.classChain = {u"PwDbObject"};
    record.handle = 5;
    record.data = {Item(true), Item(std::in_place_type<wstring>, u"x")};
    image.objects.push_back(record);
    return image;
}

std::string SmallFile() {
    std::string bytes;
    EXPECT_EQ(pwdbEncodePlw(SmallImage(), bytes), Plotwright::StatusOk);
    return bytes;
}

// The first record of SmallFile's objects payload, from the payload's start.
constexpr size_t kRecordCount = 0;
constexpr size_t kChainCount = 8;
constexpr size_t kNameUnits = 12;
constexpr size_t kHandle = 16 + 20;
constexpr size_t kErased = kHandle + 8;
constexpr size_t kItemCount = kErased + 1;
constexpr size_t kBoolTag = kItemCount + 4;
constexpr size_t kBoolByte = kBoolTag + 1;
constexpr size_t kTextUnits = kBoolByte + 2;

size_t ObjectsPayload(const std::string& bytes) {
    for (const SectionSpan& span : Sections(bytes)) {
        if (span.tag == "OBJS") return span.payload;
    }
    ADD_FAILURE() << "no objects section";
    return 0;
}

// Decodes `bytes` into an image that must stay as it was unless decoding succeeds.
Plotwright::ErrorStatus Decode(const std::string& bytes) {
    PwDbDrawingImage image;
    image.handseed = 777;
    const Plotwright::ErrorStatus status = pwdbDecodePlw(bytes, image);
    if (status != Plotwright::StatusOk) {
        EXPECT_EQ(image.handseed, 777u);
        EXPECT_TRUE(image.objects.empty());
    }
    return status;
}

TEST(PwDbPlwCorruption, SmallFileIsWhatTheTestsExpect) {
    const std::string bytes = SmallFile();
    const std::vector<SectionSpan> spans = Sections(bytes);
    ASSERT_EQ(spans.size(), 4u);
    EXPECT_EQ(spans[0].tag, "SETT");
    EXPECT_EQ(spans[1].tag, "OBJS");
    EXPECT_EQ(spans[2].tag, "PREV");
    EXPECT_EQ(spans[3].tag, "ENDS");
    EXPECT_EQ(spans[3].crc + 4, bytes.size());
    const size_t payload = spans[1].payload;
    EXPECT_EQ(Le(bytes, payload + kRecordCount, 8), 1u);
    EXPECT_EQ(Le(bytes, payload + kChainCount, 4), 1u);
    EXPECT_EQ(Le(bytes, payload + kNameUnits, 4), 10u);
    EXPECT_EQ(Le(bytes, payload + kHandle, 8), 5u);
    EXPECT_EQ(Le(bytes, payload + kErased, 1), 0u);
    EXPECT_EQ(Le(bytes, payload + kItemCount, 4), 2u);
    EXPECT_EQ(Le(bytes, payload + kBoolTag, 1), 5u);
    EXPECT_EQ(Le(bytes, payload + kBoolByte, 1), 1u);
    EXPECT_EQ(Le(bytes, payload + kTextUnits, 4), 1u);
    EXPECT_EQ(Decode(bytes), Plotwright::StatusOk);
}

TEST(PwDbPlwCorruption, ResealedChangeIsRead) {
    // Shows that resealing alone doesn't make a file unreadable, so the refusals below are
    // the codec's checks of the changed fields themselves.
    std::string bytes = SmallFile();
    PutLe(bytes, ObjectsPayload(bytes) + kHandle, 0xABCDEF, 8);
    Reseal(bytes);
    PwDbDrawingImage image;
    ASSERT_EQ(pwdbDecodePlw(bytes, image), Plotwright::StatusOk);
    ASSERT_EQ(image.objects.size(), 1u);
    EXPECT_EQ(image.objects[0].handle, 0xABCDEFu);
}

TEST(PwDbPlwCorruption, ShortInputIsRefused) {
    const std::string bytes = SmallFile();
    std::optional<PwDbPreviewImage> preview;
    for (const std::string& input :
         {std::string(), bytes.substr(0, 127), std::string(127, '\0'), std::string(128, '\0')}) {
        EXPECT_EQ(Decode(input), Plotwright::StatusBadFileFormat) << input.size();
        EXPECT_EQ(pwdbDecodePlwPreview(input, preview), Plotwright::StatusBadFileFormat);
    }
}

TEST(PwDbPlwCorruption, EveryTruncationIsRefused) {
    const std::string bytes = SmallFile();
    for (size_t size = 0; size < bytes.size(); ++size) {
        const std::string prefix = bytes.substr(0, size);
        EXPECT_EQ(Decode(prefix), Plotwright::StatusBadFileFormat) << size;
        std::optional<PwDbPreviewImage> preview;
        EXPECT_EQ(pwdbDecodePlwPreview(prefix, preview), Plotwright::StatusBadFileFormat) << size;
    }
}

TEST(PwDbPlwCorruption, EveryFlippedBitIsRefused) {
    const std::string bytes = SmallFile();
    const std::vector<SectionSpan> spans = Sections(bytes);
    auto region = [&](size_t offset) -> std::string {
        if (offset < 128) return "header";
        if (offset < spans[0].start) return "application information";
        for (const SectionSpan& span : spans) {
            if (offset < span.payload) return span.tag + " tag and length";
            if (offset < span.crc) return span.tag + " payload";
            if (offset < span.crc + 4) return span.tag + " checksum";
        }
        return "past the end";
    };
    for (size_t offset = 0; offset < bytes.size(); ++offset) {
        for (int bit : {0, 3, 7}) {
            std::string flipped = bytes;
            flipped[offset] = static_cast<char>(flipped[offset] ^ (1 << bit));
            EXPECT_EQ(Decode(flipped), Plotwright::StatusBadFileFormat)
                << "byte " << offset << " bit " << bit << " in the " << region(offset);
        }
    }
}

TEST(PwDbPlwCorruption, AppendedBytesAreRefused) {
    const std::string bytes = SmallFile();
    std::optional<PwDbPreviewImage> preview;
    for (const std::string& tail : {std::string(1, '\0'), std::string(100, 'x')}) {
        EXPECT_EQ(Decode(bytes + tail), Plotwright::StatusBadFileFormat);
        EXPECT_EQ(pwdbDecodePlwPreview(bytes + tail, preview), Plotwright::StatusBadFileFormat);
        // Even when the header counts them in, nothing may follow the end section.
        std::string counted = bytes + tail;
        Reseal(counted);
        EXPECT_EQ(Decode(counted), Plotwright::StatusBadFileFormat);
    }
}

TEST(PwDbPlwCorruption, HugeCountsAndLengthsAreRefusedAtOnce) {
    const std::string bytes = SmallFile();
    const size_t objects = ObjectsPayload(bytes);
    const std::vector<SectionSpan> spans = Sections(bytes);
    struct Patch {
        const char* what;
        size_t offset;
        uint64_t value;
        size_t size;
    };
    const Patch patches[] = {
        {"record count", objects + kRecordCount, uint64_t{1} << 60, 8},
        {"record count", objects + kRecordCount, ~uint64_t{0}, 8},
        {"record count one too many", objects + kRecordCount, 2, 8},
        {"class name count", objects + kChainCount, 0xFFFFFFFF, 4},
        {"class name units", objects + kNameUnits, 0xFFFFFFFF, 4},
        {"item count", objects + kItemCount, 0xFFFFFFFF, 4},
        {"item count one too many", objects + kItemCount, 3, 4},
        {"text units", objects + kTextUnits, 0x7FFFFFFF, 4},
        {"objects section length", spans[1].start + 4, uint64_t{1} << 60, 8},
        {"settings section length", spans[0].start + 4, ~uint64_t{0}, 8},
        {"application information entries", 128 + 32 + 4 + 66, 0xFFFFFFFF, 4},
        {"header string length", 128 + 32 + 4, 0xFFFF, 2},
        {"offset of the sections", 68, uint64_t{1} << 60, 8},
        {"length of the sections", 76, uint64_t{1} << 60, 8},
        {"preview width", spans[2].payload, 0xFFFFFFFF, 4},
        {"preview height", spans[2].payload + 4, 4097, 4},
    };
    for (const Patch& patch : patches) {
        std::string patched = bytes;
        PutLe(patched, patch.offset, patch.value, patch.size);
        // The header's own lengths stay as patched; everything else is sealed again.
        if (patch.offset == 76) {
            PutLe(patched, 124, TestCrc(patched.substr(0, 124)), 4);
        } else {
            Reseal(patched);
        }
        EXPECT_EQ(Decode(patched), Plotwright::StatusBadFileFormat) << patch.what;
    }
}

TEST(PwDbPlwCorruption, UnsoundFieldsAreRefusedBehindGoodChecksums) {
    const std::string bytes = SmallFile();
    const size_t objects = ObjectsPayload(bytes);
    const std::vector<SectionSpan> spans = Sections(bytes);
    struct Patch {
        const char* what;
        size_t offset;
        uint64_t value;
        size_t size;
    };
    const Patch patches[] = {
        {"bool of 2", objects + kBoolByte, 2, 1},
        {"erased flag of 2", objects + kErased, 2, 1},
        {"bool of 0xFF", objects + kBoolByte, 0xFF, 1},
        {"item tag 0", objects + kBoolTag, 0, 1},
        {"item tag 8", objects + kBoolTag, 8, 1},
        {"item tag 0xFF", objects + kBoolTag, 0xFF, 1},
        {"chain without names", objects + kChainCount, 0, 4},
        {"empty class name", objects + kNameUnits, 0, 4},
        {"version of another signature", 60, 31, 4},
        {"version without a signature", 60, 34, 4},
        {"settings version unlike the header's", 60, 32, 4},
        {"signature", 5, '0', 1},
        {"format tag", 52, 'X', 1},
        {"layout revision", 56, 2, 4},
        {"scan start", 48, 129, 4},
        {"reserved byte 13", 13, 1, 1},
        {"reserved byte 44", 44, 1, 1},
        {"reserved byte 100", 100, 1, 1},
        {"application information first field", 128 + 32, 2, 4},
        {"application information marker", 128, 0x54, 1},
        {"header string terminator", 128 + 32 + 4 + 64, 'x', 2},
        {"application information entry text empty", 128 + 32 + 4 + 66 + 4 + 16, 0, 2},
        {"measurement", spans[0].payload + 12, 2, 4},
        {"unknown section tag", spans[2].start, 'X', 1},
        {"end section not last", spans[3].start, 'P', 1},
    };
    for (const Patch& patch : patches) {
        std::string patched = bytes;
        PutLe(patched, patch.offset, patch.value, patch.size);
        Reseal(patched);
        EXPECT_EQ(Decode(patched), Plotwright::StatusBadFileFormat) << patch.what;
    }
}

TEST(PwDbPlwCorruption, LeftoverPayloadBytesAreRefused) {
    for (const char* tag : {"SETT", "OBJS", "PREV", "ENDS"}) {
        std::string bytes = SmallFile();
        for (const SectionSpan& span : Sections(bytes)) {
            if (span.tag != tag) continue;
            bytes.insert(span.crc, 1, '\0');
            PutLe(bytes, span.start + 4, span.length + 1, 8);
        }
        Reseal(bytes);
        EXPECT_EQ(Decode(bytes), Plotwright::StatusBadFileFormat) << tag;
    }
}

TEST(PwDbPlwCorruption, SectionsOutOfOrderAreRefused) {
    const std::string bytes = SmallFile();
    const std::vector<SectionSpan> spans = Sections(bytes);
    auto whole = [&](size_t i) {
        return bytes.substr(spans[i].start, spans[i].crc + 4 - spans[i].start);
    };
    const std::string head = bytes.substr(0, spans[0].start);
    const std::vector<std::string> orders = {
        head + whole(1) + whole(0) + whole(2) + whole(3),
        head + whole(0) + whole(2) + whole(1) + whole(3),
        head + whole(0) + whole(1) + whole(2) + whole(2) + whole(3),
        head + whole(0) + whole(1) + whole(2),
        head + whole(0) + whole(1) + whole(3) + whole(3),
    };
    for (size_t i = 0; i < orders.size(); ++i) {
        std::string file = orders[i];
        Reseal(file);
        EXPECT_EQ(Decode(file), Plotwright::StatusBadFileFormat) << i;
    }
}

void ExpectOkOrBadFormat(const std::string& bytes, const std::string& what) {
    PwDbDrawingImage image;
    const Plotwright::ErrorStatus status = pwdbDecodePlw(bytes, image);
    EXPECT_TRUE(status == Plotwright::StatusOk || status == Plotwright::StatusBadFileFormat)
        << what << ": " << status;
    std::optional<PwDbPreviewImage> preview;
    const Plotwright::ErrorStatus previewStatus = pwdbDecodePlwPreview(bytes, preview);
    EXPECT_TRUE(previewStatus == Plotwright::StatusOk ||
                previewStatus == Plotwright::StatusBadFileFormat)
        << what << ": " << previewStatus;
}

TEST(PwDbPlwCorruption, RandomBytesGiveAStatus) {
    std::mt19937_64 random(20240611);
    const std::string valid = SmallFile();
    for (int round = 0; round < 3000; ++round) {
        std::string bytes(random() % 700, '\0');
        for (char& byte : bytes) byte = static_cast<char>(random());
        // Half of them get a valid header, so that reading goes past it.
        if (round % 2 == 1 && bytes.size() >= 128) {
            bytes.replace(0, 128, valid, 0, 128);
            PutLe(bytes, 68, 128 + random() % (bytes.size() - 127), 8);
            Reseal(bytes);
        }
        ExpectOkOrBadFormat(bytes, "round " + std::to_string(round));
    }
}

TEST(PwDbPlwCorruption, RandomMutationsGiveAStatus) {
    std::mt19937_64 random(77);
    const std::string valid = SmallFile();
    int read = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string bytes = valid;
        const int changes = 1 + static_cast<int>(random() % 4);
        for (int i = 0; i < changes; ++i) {
            const size_t at = random() % bytes.size();
            switch (random() % 4) {
                case 0:
                    bytes[at] = static_cast<char>(random());
                    break;
                case 1:
                    bytes[at] = static_cast<char>(0xFF);
                    break;
                case 2:
                    bytes.erase(at, 1 + random() % 8);
                    break;
                default:
                    bytes.insert(at, 1 + random() % 8, static_cast<char>(random()));
                    break;
            }
            if (bytes.size() < 130) bytes = valid;
        }
        if (round % 4 != 0) Reseal(bytes);
        PwDbDrawingImage image;
        if (pwdbDecodePlw(bytes, image) == Plotwright::StatusOk) ++read;
        ExpectOkOrBadFormat(bytes, "round " + std::to_string(round));
    }
    // Some mutations land on free values (a handle, a pixel) and still read: the loop did
    // reach past the checksums.
    EXPECT_GT(read, 0);
}

}  // namespace
