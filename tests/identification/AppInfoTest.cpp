// The header reader on files built byte by byte: signatures, scan starts, the marker's bound,
// strings of every size, and files that end too soon.
#include <lodeqdb/identification/AppInfo.h>

#include "identification/BufferedFile.h"

#include <gtest/gtest.h>

#include "AppInfoFileBuilder.h"
#include <lodeqdb/identification/HeaderVersion.h>
#include "support/TempFolderTest.h"

namespace {

using lodeqdbidtest::AppInfoFileBuilder;
using lodeqdbidtest::TestKey;
using LodeQDBUtil::AppInfoMap;
using LodeQDBUtil::Guid;

// Counts what the reader tells.
class RecordingNotifier final : public LodeQDBUtil::PwHsAppInfoNotifier {
  public:
    void OnEntryCount(uint32_t value) override {
        ++countCalls;
        count = value;
    }
    void OnEntry(const Guid& key, const wstring& text) override {
        keys.push_back(key);
        texts.push_back(text);
    }
    int countCalls = 0;
    uint32_t count = 0xFFFFFFFF;
    std::vector<Guid> keys;
    std::vector<wstring> texts;
};

class AppInfoReader : public lodeqdbtest::TempFolderTest {
  protected:
    AppInfoReader() : TempFolderTest("lodeqdb-appinfo") {}

    wstring Save(const AppInfoFileBuilder& file, const std::string& name = "a.plw") {
        Write(name, file.Bytes());
        return Path(name);
    }

    static AppInfoFileBuilder Minimal(const std::string& signature = "PW1018") {
        AppInfoFileBuilder file(signature);
        file.Marker().U32(0).U16(0).U32(1).Key(TestKey()).String(u"ab");
        return file;
    }
};

TEST_F(AppInfoReader, TheMinimalFileGivesOneEntry) {
    const wstring path = Save(Minimal());
    RecordingNotifier notifier;
    EXPECT_TRUE(LodeQDBUtil::ReadAppInfo(path.c_str(), notifier));
    EXPECT_EQ(notifier.countCalls, 1);
    EXPECT_EQ(notifier.count, 1u);
    ASSERT_EQ(notifier.texts.size(), 1u);
    EXPECT_EQ(notifier.texts[0], u"ab");
    EXPECT_TRUE(notifier.keys[0] == TestKey());
    AppInfoMap entries;
    EXPECT_TRUE(LodeQDBUtil::ReadAppInfoMap(path.c_str(), entries));
    wstring text;
    EXPECT_TRUE(LodeQDBUtil::GetAppInfoText(entries, TestKey(), text));
    EXPECT_EQ(text, u"ab");
    text = u"untouched";
    EXPECT_FALSE(LodeQDBUtil::GetAppInfoText(entries, TestKey(0x00), text));
    EXPECT_EQ(text, u"untouched");
}

TEST_F(AppInfoReader, EverySignatureHasItsCode) {
    const std::pair<const char*, int> cases[] = {
        {"PW1012", 1}, {"PW1014", 2}, {"PW1015", 3}, {"PW1018", 4}, {"PW1021", 5}, {"PW701a", 5},
        {"PW1024", 6}, {"PW1027", 7}, {"PW1032", 8}, {"PW1033", 0}, {"pw1018", 0}, {"AC1018", 0}};
    for (const auto& [signature, code] : cases) {
        const wstring path = Save(AppInfoFileBuilder(signature, 500));
        uint32_t scanStart = 7;
        EXPECT_EQ(LodeQDBUtil::ReadFileVersionSignature(path.c_str(), scanStart), code)
            << signature;
        EXPECT_EQ(scanStart, code >= 4 ? 500u : 0u) << signature;
    }
}

TEST_F(AppInfoReader, AZeroScanStartFallsBackOnTheLargerOfTheOthers) {
    uint32_t scanStart = 0;
    const wstring first = Save(AppInfoFileBuilder("PW1018", 0, 60, 100), "first.plw");
    EXPECT_EQ(LodeQDBUtil::ReadFileVersionSignature(first.c_str(), scanStart), 4);
    EXPECT_EQ(scanStart, 100u);
    const wstring second = Save(AppInfoFileBuilder("PW1018", 0, 0x90000000, 100), "second.plw");
    LodeQDBUtil::ReadFileVersionSignature(second.c_str(), scanStart);
    EXPECT_EQ(scanStart, 0x90000000u);
    const wstring set = Save(AppInfoFileBuilder("PW1018", 128, 6000, 9000), "set.plw");
    LodeQDBUtil::ReadFileVersionSignature(set.c_str(), scanStart);
    EXPECT_EQ(scanStart, 128u);
    // Older signatures have no scan start, whatever the bytes hold.
    const wstring old = Save(AppInfoFileBuilder("PW1015", 128, 6000, 9000), "old.plw");
    LodeQDBUtil::ReadFileVersionSignature(old.c_str(), scanStart);
    EXPECT_EQ(scanStart, 0u);
}

TEST_F(AppInfoReader, TheScanStartIsFoundThroughTheFallback) {
    AppInfoFileBuilder file("PW1018", 0, 60, 100);
    file.PadTo(100).Marker().SectionHead(1).Key(TestKey()).String(u"fallback");
    AppInfoMap entries;
    EXPECT_TRUE(LodeQDBUtil::ReadAppInfoMap(Save(file).c_str(), entries));
    EXPECT_EQ(entries.begin()->second, u"fallback");
}

TEST_F(AppInfoReader, PW701aIsReadLikePW1021) {
    AppInfoMap entries;
    EXPECT_TRUE(LodeQDBUtil::ReadAppInfoMap(Save(Minimal("PW701a")).c_str(), entries));
    EXPECT_EQ(entries.size(), 1u);
}

TEST_F(AppInfoReader, OlderSignaturesGiveFalseWhateverTheFileHolds) {
    for (const char* signature : {"PW1012", "PW1014", "PW1015", "XXXXXX"}) {
        RecordingNotifier notifier;
        EXPECT_FALSE(LodeQDBUtil::ReadAppInfo(Save(Minimal(signature)).c_str(), notifier));
        EXPECT_EQ(notifier.countCalls, 0);
    }
}

TEST_F(AppInfoReader, TheMarkerMayStartAtMost4063BytesBehindTheScanStart) {
    AppInfoFileBuilder last("PW1018");
    last.PadTo(128 + 4063).Marker().SectionHead(0);
    AppInfoMap entries;
    EXPECT_TRUE(LodeQDBUtil::ReadAppInfoMap(Save(last, "last.plw").c_str(), entries));
    AppInfoFileBuilder beyond("PW1018");
    beyond.PadTo(128 + 4064).Marker().SectionHead(0);
    EXPECT_FALSE(LodeQDBUtil::ReadAppInfoMap(Save(beyond, "beyond.plw").c_str(), entries));
}

TEST_F(AppInfoReader, ACountOfZeroIsAnEmptySection) {
    AppInfoFileBuilder file("PW1032");
    file.Marker().SectionHead(0);
    RecordingNotifier notifier;
    EXPECT_TRUE(LodeQDBUtil::ReadAppInfo(Save(file).c_str(), notifier));
    EXPECT_EQ(notifier.countCalls, 1);
    EXPECT_EQ(notifier.count, 0u);
    EXPECT_TRUE(notifier.texts.empty());
}

TEST_F(AppInfoReader, TheFirstTextOfADuplicateKeyStays) {
    AppInfoFileBuilder file("PW1024");
    file.Marker().SectionHead(3).Key(TestKey()).String(u"first");
    file.Key(TestKey(0x01)).String(u"other").Key(TestKey()).String(u"second");
    AppInfoMap entries;
    EXPECT_TRUE(LodeQDBUtil::ReadAppInfoMap(Save(file).c_str(), entries));
    EXPECT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries.at(TestKey()), u"first");
}

TEST_F(AppInfoReader, KeysAreOrderedByTheirBytes) {
    Guid low = TestKey();
    low.data1 = 0x000000FF;  // bytes FF 00 00 00
    Guid high = TestKey();
    high.data1 = 0x00000100;  // bytes 00 01 00 00: less in byte order, more as a number
    AppInfoFileBuilder file("PW1018");
    file.Marker().SectionHead(2).Key(low).String(u"low").Key(high).String(u"high");
    AppInfoMap entries;
    ASSERT_TRUE(LodeQDBUtil::ReadAppInfoMap(Save(file).c_str(), entries));
    EXPECT_EQ(entries.begin()->second, u"high");
}

TEST_F(AppInfoReader, StringsOfEveryLengthReadAlike) {
    for (uint32_t units : {0u, 1u, 1023u, 1024u, 1025u, 0xFFFEu}) {
        std::u16string text(units, u'x');
        if (units > 0) text[units - 1] = u'y';
        AppInfoFileBuilder file("PW1018");
        file.Marker().SectionHead(1).Key(TestKey()).String(text);
        AppInfoMap entries;
        ASSERT_TRUE(LodeQDBUtil::ReadAppInfoMap(Save(file).c_str(), entries)) << units;
        EXPECT_EQ(entries.at(TestKey()), text) << units;
    }
}

TEST_F(AppInfoReader, LengthsZeroAndOneAreEmptyAndZeroUnitsStayInTheText) {
    AppInfoFileBuilder file("PW1018");
    file.Marker().SectionHead(3);
    file.Key(TestKey(1)).RawString(0, u"");
    file.Key(TestKey(2)).RawString(1, u"z");
    file.Key(TestKey(3)).RawString(4, std::u16string(u"a\0b", 3) + u'Q');
    AppInfoMap entries;
    ASSERT_TRUE(LodeQDBUtil::ReadAppInfoMap(Save(file).c_str(), entries));
    EXPECT_EQ(entries.at(TestKey(1)), u"");
    EXPECT_EQ(entries.at(TestKey(2)), u"");
    EXPECT_EQ(entries.at(TestKey(3)), std::u16string(u"a\0b", 3));
}

TEST_F(AppInfoReader, AStringOfTheGreatestLengthGives65534Units) {
    AppInfoFileBuilder file("PW1018");
    file.Marker().SectionHead(1).Key(TestKey()).RawString(0xFFFF, std::u16string(0xFFFF, u'k'));
    AppInfoMap entries;
    ASSERT_TRUE(LodeQDBUtil::ReadAppInfoMap(Save(file).c_str(), entries));
    EXPECT_EQ(entries.at(TestKey()).size(), 65534u);
}

TEST_F(AppInfoReader, ALengthPastTheEndGivesFalseAndKeepsWhatWasDelivered) {
    AppInfoFileBuilder file("PW1018");
    file.Marker().SectionHead(2).Key(TestKey(1)).String(u"whole");
    file.Key(TestKey(2)).RawString(500, u"short");
    RecordingNotifier notifier;
    EXPECT_FALSE(LodeQDBUtil::ReadAppInfo(Save(file).c_str(), notifier));
    ASSERT_EQ(notifier.texts.size(), 1u);
    EXPECT_EQ(notifier.texts[0], u"whole");
}

TEST_F(AppInfoReader, AFileThatEndsAnywhereInTheSectionGivesFalse) {
    AppInfoFileBuilder whole("PW1018");
    whole.Marker().SectionHead(1).Key(TestKey()).String(u"abc");
    for (size_t size = 0; size < whole.Size(); ++size) {
        Write("cut.plw", whole.Bytes().substr(0, size));
        AppInfoMap entries;
        EXPECT_FALSE(LodeQDBUtil::ReadAppInfoMap(Path("cut.plw").c_str(), entries)) << size;
    }
}

TEST_F(AppInfoReader, MissingShortAndUnreadableFilesAreUnknown) {
    uint32_t scanStart = 9;
    EXPECT_EQ(LodeQDBUtil::ReadFileVersionSignature(Path("missing.plw").c_str(), scanStart), 0);
    EXPECT_EQ(scanStart, 0u);
    Write("short.plw", "PW1018");
    EXPECT_EQ(LodeQDBUtil::ReadFileVersionSignature(Path("short.plw").c_str(), scanStart), 4);
    EXPECT_EQ(scanStart, 0u);
    EXPECT_EQ(LodeQDBUtil::ReadFileVersionSignature(Path("").c_str(), scanStart), 0);
    AppInfoMap entries;
    EXPECT_FALSE(LodeQDBUtil::ReadAppInfoMap(Path("missing.plw").c_str(), entries));
    EXPECT_FALSE(LodeQDBUtil::ReadAppInfoMap(Path("short.plw").c_str(), entries));
}

TEST_F(AppInfoReader, AScanStartBeyondTheFileFindsNoMarker) {
    AppInfoFileBuilder file("PW1018", 0x7FFFFFF0);
    file.Marker().SectionHead(0);
    AppInfoMap entries;
    EXPECT_FALSE(LodeQDBUtil::ReadAppInfoMap(Save(file).c_str(), entries));
}

TEST(BufferedFileReads, NothingIsAlwaysDeliveredAndLongMarkersAreRefused) {
    LodeQDBUtil::BufferedFile file;
    EXPECT_TRUE(LodeQDBUtil::ReadBytes(file, nullptr, 0));
    unsigned char byte = 0;
    EXPECT_FALSE(LodeQDBUtil::ReadBytes(file, &byte, 1));
    std::vector<unsigned char> marker(1024, 0);
    EXPECT_EQ(LodeQDBUtil::ScanForMarker(file, marker.data(), 1024), -1);
}

}  // namespace

#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>

namespace {

class ToolkitFiles : public lodeqdbtest::TempFolderTest {
  protected:
    ToolkitFiles() : TempFolderTest("lodeqdb-appinfo-toolkit") {}
};

TEST_F(ToolkitFiles, EverySavedGenerationFromPW1018OnCarriesTheOwnersEntries) {
    auto drawing = PwDbAuthoring::createDrawing();
    const wstring owner = pwdbHostApplicationServices()->ownerGuid();
    for (int version = PwDb::PwDbPlwVersionOldest; version <= PwDb::PwDbPlwVersionCurrent;
         ++version) {
        const wstring path = Path(std::to_string(version).insert(0, 1, 'v') + ".plw");
        ASSERT_EQ(drawing->saveAs(path.c_str(), false, static_cast<PwDb::PwDbPlwVersion>(version)),
                  Plotwright::StatusOk);
        AppInfoMap entries;
        const bool read = LodeQDBUtil::ReadAppInfoMap(path.c_str(), entries);
        uint32_t scanStart = 0;
        const int code = LodeQDBUtil::ReadFileVersionSignature(path.c_str(), scanStart);
        EXPECT_EQ(read, version >= 24) << version;
        EXPECT_EQ(code >= 4, version >= 24) << version;
        if (!read) continue;
        wstring text;
        ASSERT_TRUE(LodeQDBUtil::GetAppInfoText(entries, TestKey(), text)) << version;
        EXPECT_EQ(text, owner);
        Guid summary;
        summary.data1 = 0xF29F85E0;
        summary.data2 = 0x4FF9;
        summary.data3 = 0x1068;
        const uint8_t tail[8] = {0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9};
        for (int i = 0; i < 8; ++i) summary.data4[i] = tail[i];
        ASSERT_TRUE(LodeQDBUtil::GetAppInfoText(entries, summary, text));
        EXPECT_NE(text.find(u"<prop id=\"258\"><string>"), wstring::npos);
    }
}

}  // namespace
