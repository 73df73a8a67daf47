// Reading and saving drawings in both formats: round trips, header bytes, statuses, locks
// between processes, and failed saves.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <random>
#include <string>

#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbLayerTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/db/PwDbProxyObject.h>
#include "PwDbImageTestSupport.h"
#include "PwDbSampleDrawing.h"
#include "support/TempFolderTest.h"
#include "toolkit/file/PwDbDrawingImage.h"
#include "toolkit/file/PwDbPlwCodec.h"
#include "toolkit/file/PwDbPlxCodec.h"
#include "toolkit/pal/PwFileSystemCalls.h"

namespace {

using Plotwright::StatusOk;

class DrawingFiles : public lodeqdbtest::TempFolderTest {
  protected:
    DrawingFiles() : TempFolderTest("lodeqdb-files") {}
};

// Everything a file can hold, compared between two drawings.
void ExpectSameDrawing(const PwDbDatabase& expected, const PwDbDatabase& actual, int version) {
    PwDbDrawingImage a, b;
    ASSERT_EQ(expected.captureImage(a, version), StatusOk);
    ASSERT_EQ(actual.captureImage(b, version), StatusOk);
    pwdbfiletest::ExpectSameImage(a, b);
}

TEST_F(DrawingFiles, NativeRoundTripInEveryVersion) {
    const auto drawing = pwdbfiletest::MakeSampleDrawing();
    for (int version = kPwDbOldestVersion; version <= kPwDbNewestVersion; ++version) {
        SCOPED_TRACE(version);
        const wstring path = Path(std::to_string(version).insert(0, 1, 'v') + ".plw");
        ASSERT_EQ(drawing->saveAs(path.c_str(), false, static_cast<PwDb::PwDbPlwVersion>(version)),
                  StatusOk);
        EXPECT_EQ(drawing->lastSavedAsVersion(), version);
        PwDbDatabase read;
        ASSERT_EQ(read.readPlwFile(path.c_str(), PwDbDatabase::OpenModeAlternate), StatusOk);
        EXPECT_EQ(read.originalFileVersion(), version);
        EXPECT_EQ(read.lastSavedAsVersion(), PwDb::PwDbPlwVersionNone);
        const char16_t* name = nullptr;
        read.getFilename(name);
        ASSERT_NE(name, nullptr);
        EXPECT_EQ(wstring(name), path);
        ExpectSameDrawing(*drawing, read, version);
    }
}

TEST_F(DrawingFiles, ExchangeRoundTripInEveryVersion) {
    const auto drawing = pwdbfiletest::MakeSampleDrawing();
    for (int version = kPwDbOldestVersion; version <= kPwDbNewestVersion; ++version) {
        SCOPED_TRACE(version);
        const wstring path = Path(std::to_string(version).insert(0, 1, 'v') + ".plx");
        ASSERT_EQ(
            drawing->plxOut(path.c_str(), 16, static_cast<PwDb::PwDbPlwVersion>(version), true),
            StatusOk);
        PwDbDatabase read;
        ASSERT_EQ(read.plxIn(path.c_str()), StatusOk);
        EXPECT_EQ(read.originalFileVersion(), version);
        ExpectSameDrawing(*drawing, read, version);
    }
}

TEST_F(DrawingFiles, NativeToExchangeToNativeKeepsEverything) {
    const auto drawing = pwdbfiletest::MakeSampleDrawing();
    ASSERT_EQ(drawing->saveAs(Path("a.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    PwDbDatabase first;
    ASSERT_EQ(first.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeAlternate), StatusOk);
    ASSERT_EQ(first.plxOut(Path("b.plx").c_str(), 16, PwDb::PwDbPlwVersionCurrent, true), StatusOk);
    PwDbDatabase second;
    ASSERT_EQ(second.plxIn(Path("b.plx").c_str()), StatusOk);
    ASSERT_EQ(second.saveAs(Path("c.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    PwDbDatabase third;
    ASSERT_EQ(third.readPlwFile(Path("c.plw").c_str(), PwDbDatabase::OpenModeAlternate), StatusOk);
    ExpectSameDrawing(*drawing, third, PwDb::PwDbPlwVersionCurrent);
}

TEST_F(DrawingFiles, UnchangedDrawingSavesToTheSameBytes) {
    const auto drawing = pwdbfiletest::MakeSampleDrawing();
    ASSERT_EQ(drawing->saveAs(Path("a.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    PwDbDatabase read;
    ASSERT_EQ(read.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeAlternate), StatusOk);
    ASSERT_EQ(read.saveAs(Path("b.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    EXPECT_EQ(Read("a.plw"), Read("b.plw"));
}

TEST_F(DrawingFiles, ReadDrawingWorksLikeTheOriginal) {
    const auto drawing = pwdbfiletest::MakeSampleDrawing();
    ASSERT_EQ(drawing->saveAs(Path("a.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    PwDbDatabase read;
    ASSERT_EQ(read.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeAlternate), StatusOk);
    EXPECT_EQ(read.measurement(), PwDb::Imperial);
    PwDbSymbolTablePointer<PwDbLayerTable> layers(&read, PwDb::OpenForRead);
    PwDbObjectId walls;
    ASSERT_EQ(layers->getIdAt(u"walls", walls), StatusOk) << "lookups work after reading";
    PwDbObjectPointer<PwDbLayerTableRecord> layer(walls, PwDb::OpenForRead);
    EXPECT_TRUE(layer->isFrozen());
    EXPECT_TRUE(layer->isInUse());
    layer.release();
    layers.release();
    EXPECT_EQ(PwDbAuthoring::addLayer(read, u"Added after reading"), StatusOk);
    PwDbObjectId added;
    EXPECT_EQ(PwDbAuthoring::addLine(read, read.modelSpaceId(), {}, {1, 0, 0}, {}, &added),
              StatusOk);
    EXPECT_GE(added.handle(), drawing->handseed()) << "handles are never reused";
}

TEST_F(DrawingFiles, HeaderAndApplicationInformationBytes) {
    const auto drawing = pwdbfiletest::MakeSampleDrawing();
    ASSERT_EQ(drawing->saveAs(Path("a.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    const std::string bytes = Read("a.plw");
    ASSERT_GT(bytes.size(), 256u);
    EXPECT_EQ(bytes.substr(0, 6), "PW1032");
    auto u32 = [&](size_t at) { return pwdbfiletest::Le(bytes, at, 4); };
    EXPECT_EQ(u32(48), 128u);
    EXPECT_EQ(u32(13), 0u);
    EXPECT_EQ(u32(44), 0u);
    const unsigned char marker[32] = {0x53, 0xDE, 0x38, 0x1D, 0xEC, 0x43, 0x21, 0xCA,
                                      0x96, 0x19, 0xE1, 0xE2, 0x17, 0x1A, 0x2A, 0x67,
                                      0x3B, 0xD9, 0x7F, 0xF7, 0x3C, 0xBB, 0xCE, 0x08,
                                      0xA0, 0x53, 0xD8, 0xED, 0xD2, 0x8D, 0xC5, 0xC7};
    EXPECT_EQ(std::memcmp(bytes.data() + 128, marker, 32), 0);
    size_t at = 128 + 32 + 4;
    const size_t headerLength = pwdbfiletest::Le(bytes, at, 2);
    at += 2 + 2 * headerLength;
    EXPECT_EQ(u32(at), 2u) << "owner and creator entries";
    at += 4;
    auto readString = [&](size_t& pos) {
        const size_t length = pwdbfiletest::Le(bytes, pos, 2);
        pos += 2;
        std::u16string text;
        for (size_t i = 0; i + 1 < length; ++i) {
            text.push_back(static_cast<char16_t>(pwdbfiletest::Le(bytes, pos + 2 * i, 2)));
        }
        EXPECT_EQ(bytes[pos + 2 * (length - 1)], 0);
        pos += 2 * length;
        return text;
    };
    EXPECT_EQ(std::memcmp(bytes.data() + at, kPwDbOwnerGuidKey.data(), 16), 0);
    at += 16;
    EXPECT_EQ(readString(at), u"{F29F85E0-4FF9-1068-AB91-08002B27B3D9}");
    EXPECT_EQ(std::memcmp(bytes.data() + at, kPwDbSummaryFormatId.data(), 16), 0);
    at += 16;
    EXPECT_EQ(readString(at),
              u"<prop_set fmt_id=\"{F29F85E0-4FF9-1068-AB91-08002B27B3D9}\"><prop "
              u"id=\"258\"><string>LodeQDB</string></prop></prop_set>");
}

TEST_F(DrawingFiles, FailedReadsGiveTheirStatusesAndKeepTheDrawing) {
    PwDbDatabase database;
    const size_t before = database.numObjects();
    EXPECT_EQ(database.readPlwFile(Path("missing.plw").c_str()), Plotwright::StatusFileNotFound);
    Write("empty.plw", "");
    EXPECT_EQ(database.readPlwFile(Path("empty.plw").c_str()), Plotwright::StatusBadFileFormat);
    Write("text.plw", "hello, I am not a drawing");
    EXPECT_EQ(database.readPlwFile(Path("text.plw").c_str()), Plotwright::StatusBadFileFormat);
    EXPECT_EQ(database.plxIn(Path("text.plw").c_str()), Plotwright::StatusBadFileFormat);
    EXPECT_EQ(database.readPlwFile(nullptr), Plotwright::StatusInvalidInput);
    EXPECT_EQ(
        database.readPlwFile(Path("text.plw").c_str(), static_cast<PwDbDatabase::OpenMode>(9)),
        Plotwright::StatusInvalidInput);
    EXPECT_EQ(database.numObjects(), before);
}

TEST_F(DrawingFiles, CorruptTruncatedAndWrongVersionFilesAreRefused) {
    const auto drawing = pwdbfiletest::MakeSampleDrawing();
    ASSERT_EQ(drawing->saveAs(Path("a.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    const std::string good = Read("a.plw");
    std::mt19937 random(7);
    for (int trial = 0; trial < 200; ++trial) {
        std::string bad = good;
        if (trial % 2 == 0) {
            bad.resize(random() % good.size());
        } else {
            bad[random() % bad.size()] ^= static_cast<char>(1 + random() % 255);
        }
        Write("bad.plw", bad);
        PwDbDatabase database;
        const Plotwright::ErrorStatus status = database.readPlwFile(Path("bad.plw").c_str());
        EXPECT_EQ(status, Plotwright::StatusBadFileFormat) << trial;
    }
    std::string older = good;
    older.replace(0, 6, "PW1012");
    Write("older.plw", older);
    PwDbDatabase database;
    EXPECT_EQ(database.readPlwFile(Path("older.plw").c_str()), Plotwright::StatusBadFileFormat);
    EXPECT_EQ(drawing->saveAs(Path("x.plw").c_str(), true, static_cast<PwDb::PwDbPlwVersion>(34)),
              Plotwright::StatusNoSuchVersion);
    EXPECT_EQ(drawing->saveAs(Path("x.plw").c_str(), true, static_cast<PwDb::PwDbPlwVersion>(15)),
              Plotwright::StatusNoSuchVersion);
}

TEST_F(DrawingFiles, UnreadablePermissionGivesASecurityStatus) {
    const auto drawing = pwdbfiletest::MakeSampleDrawing();
    ASSERT_EQ(drawing->saveAs(Path("a.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    PwFileSystemCalls refusing{};
    refusing.open = [](const char*, int, mode_t) {
        errno = EACCES;
        return -1;
    };
    pwReplaceFileSystemCallsForTesting(refusing);
    PwDbDatabase database;
    EXPECT_EQ(database.readPlwFile(Path("a.plw").c_str()), Plotwright::StatusSecurityAccessDenied);
}

TEST_F(DrawingFiles, UnknownClassesComeBackAsProxiesAndAreWrittenBackUnchanged) {
    const auto drawing = pwdbfiletest::MakeSampleDrawing();
    PwDbDrawingImage image;
    ASSERT_EQ(drawing->captureImage(image, PwDb::PwDbPlwVersionCurrent), StatusOk);
    size_t renamed = 0;
    for (PwDbObjectRecord& record : image.objects) {
        if (record.classChain.front() == u"PwDbCircle") {
            record.classChain.front() = u"PwDbSomeonesCircle";
            ++renamed;
        }
    }
    ASSERT_EQ(renamed, 1u);
    std::string bytes;
    ASSERT_EQ(pwdbEncodePlw(image, bytes), StatusOk);
    Write("foreign.plw", bytes);
    PwDbDatabase read;
    ASSERT_EQ(read.readPlwFile(Path("foreign.plw").c_str(), PwDbDatabase::OpenModeAlternate),
              StatusOk);
    ASSERT_EQ(read.saveAs(Path("again.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    EXPECT_EQ(Read("again.plw"), bytes) << "the proxy's data went back unchanged";
}

// A dictionary whose class the reader lacks still holds the handles of its entries in the
// data the proxy keeps: saving it must write those handles, resolved in the drawing the proxy
// lives in, whichever database the reader made it in first.
TEST_F(DrawingFiles, UnknownClassesHoldingHandlesSaveInBothFormats) {
    const auto drawing = pwdbfiletest::MakeSampleDrawing();
    PwDbDrawingImage image;
    ASSERT_EQ(drawing->captureImage(image, PwDb::PwDbPlwVersionCurrent), StatusOk);
    PwDbObjectRecord* last = nullptr;
    for (PwDbObjectRecord& record : image.objects) {
        if (record.classChain.front() == u"PwDbDictionary") last = &record;
    }
    ASSERT_NE(last, nullptr);
    last->classChain.front() = u"ThirdPartyDictionary";
    const bool holdsHandles =
        std::any_of(last->data.begin(), last->data.end(), [](const PwDbMemoryFiler::Item& item) {
            return std::holds_alternative<PwDbMemoryFiler::Handle>(item);
        });
    ASSERT_TRUE(holdsHandles) << "the test needs a dictionary with entries";
    std::string native, exchange;
    ASSERT_EQ(pwdbEncodePlw(image, native), StatusOk);
    ASSERT_EQ(pwdbEncodePlx(image, 16, exchange), StatusOk);
    Write("odd.plw", native);
    Write("odd.plx", exchange);

    for (const char* input : {"odd.plw", "odd.plx"}) {
        SCOPED_TRACE(input);
        PwDbDatabase read;
        const bool isExchange = std::string(input).ends_with(".plx");
        ASSERT_EQ(isExchange
                      ? read.plxIn(Path(input).c_str())
                      : read.readPlwFile(Path(input).c_str(), PwDbDatabase::OpenModeAlternate),
                  StatusOk);
        ASSERT_EQ(read.saveAs(Path("out.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent),
                  StatusOk);
        ASSERT_EQ(read.plxOut(Path("out.plx").c_str(), 16, PwDb::PwDbPlwVersionCurrent, true),
                  StatusOk);
        EXPECT_EQ(Read("out.plw"), native) << "every handle went back as it was";
        EXPECT_EQ(Read("out.plx"), exchange);

        PwDbDatabase again;
        ASSERT_EQ(again.readPlwFile(Path("out.plw").c_str(), PwDbDatabase::OpenModeAlternate),
                  StatusOk);
        PwDbObjectPointer<PwDbProxyObject> proxy(again.getPwDbObjectId(last->handle),
                                                 PwDb::OpenForRead);
        ASSERT_EQ(proxy.openStatus(), StatusOk);
        EXPECT_EQ(wstring(proxy->proxiedClassName()), u"ThirdPartyDictionary");
    }
}

TEST_F(DrawingFiles, SavingOverTheInputWaitsForCloseInput) {
    const auto drawing = pwdbfiletest::MakeSampleDrawing();
    ASSERT_EQ(drawing->saveAs(Path("a.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    for (const auto mode : {PwDbDatabase::OpenModeShareRead, PwDbDatabase::OpenModeExclusive,
                            PwDbDatabase::OpenModeShareAll}) {
        SCOPED_TRACE(mode);
        PwDbDatabase read;
        ASSERT_EQ(read.readPlwFile(Path("a.plw").c_str(), mode), StatusOk);
        EXPECT_EQ(read.saveAs(Path("a.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent),
                  Plotwright::StatusFileInUse);
        EXPECT_EQ(read.closeInput(true), StatusOk);
        EXPECT_EQ(read.saveAs(Path("a.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    }
    PwDbDatabase alternate;
    ASSERT_EQ(alternate.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeAlternate),
              StatusOk);
    EXPECT_EQ(alternate.saveAs(Path("a.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
}

TEST_F(DrawingFiles, OpenModesHoldBetweenProcesses) {
    const auto drawing = pwdbfiletest::MakeSampleDrawing();
    ASSERT_EQ(drawing->saveAs(Path("a.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    const wstring path = Path("a.plw");
    auto childReads = [&](PwDbDatabase::OpenMode mode) {
        return InChildProcess([&] {
            PwDbDatabase database;
            return static_cast<int>(database.readPlwFile(path.c_str(), mode) == StatusOk);
        });
    };
    auto childSaves = [&] {
        return InChildProcess([&] {
            PwDbDatabase database;
            return static_cast<int>(
                database.saveAs(path.c_str(), true, PwDb::PwDbPlwVersionCurrent) == StatusOk);
        });
    };
    {
        PwDbDatabase holder;
        ASSERT_EQ(holder.readPlwFile(path.c_str(), PwDbDatabase::OpenModeShareRead), StatusOk);
        EXPECT_EQ(childReads(PwDbDatabase::OpenModeShareRead), 1) << "readers share";
        EXPECT_EQ(childReads(PwDbDatabase::OpenModeExclusive), 0);
        EXPECT_EQ(childSaves(), 0) << "nobody replaces a file that is being read";
        holder.closeInput(true);
        EXPECT_EQ(childReads(PwDbDatabase::OpenModeExclusive), 1);
    }
    {
        PwDbDatabase holder;
        ASSERT_EQ(holder.readPlwFile(path.c_str(), PwDbDatabase::OpenModeExclusive), StatusOk);
        EXPECT_EQ(childReads(PwDbDatabase::OpenModeShareRead), 0);
        EXPECT_EQ(childReads(PwDbDatabase::OpenModeShareAll), 0);
        EXPECT_EQ(childReads(PwDbDatabase::OpenModeAlternate), 0);
        EXPECT_EQ(childSaves(), 0);
    }
    {
        PwDbDatabase holder;
        ASSERT_EQ(holder.readPlwFile(path.c_str(), PwDbDatabase::OpenModeAlternate), StatusOk);
        EXPECT_EQ(childReads(PwDbDatabase::OpenModeExclusive), 1) << "mode 4 holds nothing";
        EXPECT_EQ(childSaves(), 1);
    }
}

TEST_F(DrawingFiles, FailedSaveLeavesTheOldFileByteForByte) {
    const auto drawing = pwdbfiletest::MakeSampleDrawing();
    ASSERT_EQ(drawing->saveAs(Path("a.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    const std::string before = Read("a.plw");
    ASSERT_EQ(PwDbAuthoring::addLayer(*drawing, u"Changed"), StatusOk);
    static int writesLeft;
    PwFileSystemCalls failing{};
    failing.write = [](int fd, const void* data, size_t size) -> ssize_t {
        if (writesLeft-- <= 0) {
            errno = ENOSPC;
            return -1;
        }
        return ::write(fd, data, size < 64 ? size : 64);
    };
    pwReplaceFileSystemCallsForTesting(failing);
    for (int allowed : {0, 1, 5, 20}) {
        writesLeft = allowed;
        EXPECT_EQ(drawing->saveAs(Path("a.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent),
                  Plotwright::StatusFileIOError);
        EXPECT_EQ(Read("a.plw"), before);
    }
    pwReplaceFileSystemCallsForTesting({});
    EXPECT_EQ(drawing->saveAs(Path("a.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    EXPECT_NE(Read("a.plw"), before);
}

}  // namespace

#include <lodeqdb/toolkit/file/PwDbPreview.h>

namespace {

TEST_F(DrawingFiles, PreviewIsReadWithoutADatabase) {
    const auto drawing = pwdbfiletest::MakeSampleDrawing();
    ASSERT_EQ(drawing->saveAs(Path("a.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    HBITMAP bitmap = nullptr;
    HPALETTE palette = reinterpret_cast<HPALETTE>(0x1);
    ASSERT_TRUE(pwdbGetPreviewBitmapFromPlw(Path("a.plw").c_str(), &bitmap, &palette));
    uint32_t width = 0, height = 0;
    ASSERT_TRUE(pwdbBitmapSize(bitmap, width, height));
    EXPECT_EQ(width, 2u);
    EXPECT_EQ(height, 2u);
    EXPECT_EQ(pwdbBitmapPixels(bitmap)[2], 0xFF102030u);
    EXPECT_EQ(palette, nullptr);
    EXPECT_EQ(pwdbPaletteSize(palette), 0u);
    pwdbDeleteBitmap(bitmap);
    pwdbDeletePalette(palette);

    drawing->setPreviewImage(nullptr);
    ASSERT_EQ(drawing->saveAs(Path("b.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    EXPECT_FALSE(pwdbGetPreviewBitmapFromPlw(Path("b.plw").c_str(), &bitmap, &palette));
    EXPECT_EQ(bitmap, nullptr);
    EXPECT_FALSE(pwdbGetPreviewBitmapFromPlw(Path("none.plw").c_str(), &bitmap, &palette));
    EXPECT_FALSE(pwdbGetPreviewBitmapFromPlw(nullptr, &bitmap, &palette));
    EXPECT_FALSE(pwdbBitmapSize(nullptr, width, height));
}

}  // namespace
