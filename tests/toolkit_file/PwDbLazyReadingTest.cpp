// Drawings read from indexed native files: records decoded when first needed, the same answers
// as a drawing read whole, damage found when it is needed, files changed under a partly read
// drawing reported by status, unchanged records saved from their stored bytes.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbCurves.h>
#include <lodeqdb/toolkit/db/PwDbLayerTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include "PwDbImageTestSupport.h"
#include "PwDbSampleDrawing.h"
#include "support/TempFolderTest.h"
#include "toolkit/db/PwDbStub.h"
#include "toolkit/file/PwDbPlwCodec.h"
#include "toolkit/file/PwDbPlwIndexed.h"
#include "toolkit/pal/PwFileSystemCalls.h"

namespace {

using Plotwright::StatusOk;

// Large enough that the first read doesn't take the whole file, so records come from disk.
constexpr int kLines = 4000;

class LazyReading : public lodeqdbtest::TempFolderTest {
  protected:
    LazyReading() : TempFolderTest("lodeqdb-lazy") {}

    // A drawing of kLines lines (the line i from (0, 0, 0) to (i, 2i, 0)) saved as `name`;
    // the ids of its lines in order.
    std::vector<PwDbHandle> SaveLines(const std::string& name, int lines = kLines) {
        auto drawing = PwDbAuthoring::createDrawing();
        std::vector<PwDbHandle> handles;
        for (int i = 0; i < lines; ++i) {
            PwDbObjectId id;
            EXPECT_EQ(PwDbAuthoring::addLine(*drawing, drawing->modelSpaceId(), {0, 0, 0},
                                             {double(i), 2.0 * i, 0}, {}, &id),
                      StatusOk);
            handles.push_back(id.handle());
        }
        EXPECT_EQ(drawing->saveAs(Path(name).c_str(), false, PwDb::PwDbPlwVersionCurrent),
                  StatusOk);
        return handles;
    }

    // The front of the indexed file `name`.
    PwDbPlwIndexedFront Front(const std::string& name) {
        const std::string bytes = Read(name);
        const PwDbPlwFrontExtent extent = pwdbPlwIndexedFrontExtent(bytes, bytes.size());
        PwDbPlwIndexedFront front;
        EXPECT_TRUE(extent.complete);
        EXPECT_TRUE(pwdbPlwReadIndexedFront(std::string_view(bytes).substr(0, extent.end),
                                            bytes.size(), front));
        return front;
    }

    // Where the record of `handle` lies in the file `name`: its page's first byte and length.
    std::pair<uint64_t, uint32_t> PageOf(const std::string& name, PwDbHandle handle) {
        const PwDbPlwIndexedFront front = Front(name);
        const std::string bytes = Read(name);
        for (size_t page = 0; page < front.pages.size(); ++page) {
            PwDbPlwPageRecords records;
            const PwDbPlwPage& described = front.pages[page];
            EXPECT_TRUE(pwdbPlwReadPageRecords(
                front, page,
                std::string_view(bytes).substr(described.runOffset, described.runLength), records));
            for (const PwDbHandle held : records.handles) {
                if (held == handle) return {front.pages[page].offset, front.pages[page].length};
            }
        }
        ADD_FAILURE() << "no record " << handle;
        return {0, 0};
    }

    static Plotwright::ErrorStatus OpenLine(PwDbDatabase& drawing, PwDbHandle handle,
                                            PwGePoint3d* end = nullptr) {
        PwDbObjectPointer<PwDbLine> line(drawing.getPwDbObjectId(handle), PwDb::OpenForRead);
        if (line.openStatus() == StatusOk && end != nullptr) *end = line->endPoint();
        return line.openStatus();
    }

    // Line `i` of a drawing whose file changed after it was read: the line as it was read
    // (its page was read before the change, and kept), or StatusBadFileFormat; never a line
    // of the file as it is now.
    static void ExpectTheLineOrAStatus(PwDbDatabase& drawing, const std::vector<PwDbHandle>& lines,
                                       int i) {
        PwGePoint3d end;
        const Plotwright::ErrorStatus status = OpenLine(drawing, lines[i], &end);
        if (status == StatusOk) {
            EXPECT_EQ(end, PwGePoint3d(i, 2.0 * i, 0)) << "line " << i;
        } else {
            EXPECT_EQ(status, Plotwright::StatusBadFileFormat) << "line " << i;
        }
    }

    // A save of a drawing some of whose records can't be had fails, and the file it would
    // have replaced keeps its bytes: a save can't copy what it can't read.
    void ExpectASaveFailsAndKeepsItsTarget(PwDbDatabase& drawing) {
        Write("target.plw", "old bytes");
        EXPECT_EQ(drawing.saveAs(Path("target.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent),
                  Plotwright::StatusBadFileFormat);
        EXPECT_EQ(Read("target.plw"), "old bytes");
    }

    void Overwrite(const std::string& name, uint64_t offset, const std::string& bytes) {
        const int fd = open((folder + "/" + name).c_str(), O_WRONLY);
        ASSERT_GE(fd, 0);
        ASSERT_EQ(pwrite(fd, bytes.data(), bytes.size(), static_cast<off_t>(offset)),
                  static_cast<ssize_t>(bytes.size()));
        close(fd);
    }
};

TEST_F(LazyReading, TheIndexedLayoutKeepsEveryRecord) {
    const auto drawing = pwdbfiletest::MakeSampleDrawing();
    PwDbDrawingImage image;
    ASSERT_EQ(drawing->captureImage(image, PwDb::PwDbPlwVersionCurrent), StatusOk);
    std::string bytes;
    ASSERT_EQ(pwdbEncodePlwIndexed(image, bytes), StatusOk);
    EXPECT_EQ(bytes.substr(52, 5), std::string("LQDB\x02", 5));
    PwDbDrawingImage read;
    ASSERT_EQ(pwdbDecodePlw(bytes, read), StatusOk);
    pwdbfiletest::ExpectSameImage(image, read);
}

TEST_F(LazyReading, ALineCostsAtMost64Bytes) {
    SaveLines("none.plw", 0);
    SaveLines("many.plw", 10000);
    const double perLine =
        static_cast<double>(Read("many.plw").size() - Read("none.plw").size()) / 10000;
    EXPECT_LE(perLine, 64.0);
    EXPECT_GT(perLine, 48.0) << "two points take 48 bytes";
}

// The front (everything a reader takes before the records) doesn't grow with a block's
// entities: the shape of the model space, a handle per entity, is kept as a run.
TEST_F(LazyReading, TheFrontStaysSmallHoweverManyEntitiesABlockHolds) {
    SaveLines("few.plw", 10);
    SaveLines("many.plw", 20000);
    const auto frontBytes = [&](const std::string& name) {
        const std::string bytes = Read(name);
        return pwdbPlwIndexedFrontExtent(bytes, bytes.size()).end;
    };
    const uint64_t few = frontBytes("few.plw");
    const uint64_t many = frontBytes("many.plw");
    // The table of pages grows (a few bytes a page of about 4 KiB); nothing else does.
    EXPECT_LT(many, few + 4096) << few << " then " << many;
    const PwDbPlwIndexedFront front = Front("many.plw");
    size_t longest = 0;
    for (const PwDbPlwShape& shape : front.shapes) longest = std::max(longest, shape.tags.size());
    EXPECT_GE(longest, 20000u) << "the model space's shape, read back whole";
}

int gOpens = 0;

// A large drawing read in the mode that holds nothing is opened again for every read from
// disk: its tables (in the first pages) and its index (at the end) take two opens in all, and
// decoding everything one more.
TEST_F(LazyReading, TheTablesOfALargeDrawingTakeTwoOpensOfItsFile) {
    SaveLines("many.plw", 20000);
    PwFileSystemCalls counting{};
    counting.open = [](const char* path, int flags, mode_t mode) {
        ++gOpens;
        return ::open(path, flags, mode);
    };
    pwReplaceFileSystemCallsForTesting(counting);
    gOpens = 0;
    PwDbDatabase drawing(false, true);
    ASSERT_EQ(drawing.readPlwFile(Path("many.plw").c_str(), PwDbDatabase::OpenModeAlternate),
              StatusOk);
    {
        PwDbObjectPointer<PwDbBlockTable> blocks(drawing.blockTableId(), PwDb::OpenForRead);
        ASSERT_EQ(blocks.openStatus(), StatusOk);
        PwDbObjectId model;
        EXPECT_EQ(blocks->getIdAt(u"*Model_Space", model), StatusOk);
        EXPECT_EQ(model, drawing.modelSpaceId());
        PwDbObjectPointer<PwDbLayerTable> layers(drawing.layerTableId(), PwDb::OpenForRead);
        ASSERT_EQ(layers.openStatus(), StatusOk);
        EXPECT_TRUE(layers->has(u"0"));
    }
    EXPECT_LE(gOpens, 2) << "the front with the first pages, then the end of the file";
    const int beforeClosing = gOpens;
    ASSERT_EQ(drawing.closeInput(true), StatusOk);
    EXPECT_LE(gOpens, beforeClosing + 1) << "every page still in the file, in one read";
    pwReplaceFileSystemCallsForTesting({});
}

// Opening a table decodes its records to learn their names; with lines between them, the
// records of a large layer table stand in many windows, read and given up while the table's
// own record is still being decoded.
TEST_F(LazyReading, ATableWhoseRecordsFillManyWindowsReadsWhole) {
    constexpr int kLayers = 3000;
    {
        auto drawing = PwDbAuthoring::createDrawing();
        for (int i = 0; i < kLayers; ++i) {
            ASSERT_EQ(PwDbAuthoring::addLayer(
                          *drawing, u"layer " + LodeUtil::Utf16FromUtf8(std::to_string(i))),
                      StatusOk);
            for (int k = 0; k < 20; ++k) {
                PwDbAuthoring::addLine(*drawing, drawing->modelSpaceId(), {0, 0, 0},
                                       {double(k), double(i), 0});
            }
        }
        ASSERT_EQ(drawing->saveAs(Path("layers.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent),
                  StatusOk);
    }
    ASSERT_GT(Read("layers.plw").size(), 16u * 64 * 1024) << "many windows' worth";
    PwDbDatabase drawing(false, true);
    ASSERT_EQ(drawing.readPlwFile(Path("layers.plw").c_str(), PwDbDatabase::OpenModeAlternate),
              StatusOk);
    PwDbObjectPointer<PwDbLayerTable> layers(drawing.layerTableId(), PwDb::OpenForRead);
    ASSERT_EQ(layers.openStatus(), StatusOk);
    for (int i : {0, 1, kLayers / 2, kLayers - 1}) {
        EXPECT_TRUE(layers->has((u"layer " + LodeUtil::Utf16FromUtf8(std::to_string(i))).c_str()))
            << i;
    }
    EXPECT_FALSE(layers->has(u"layer 3000"));
}

TEST_F(LazyReading, ReadingDecodesNothingUntilAnObjectIsNeeded) {
    const auto lines = SaveLines("a.plw");
    PwDbDatabase drawing(false, true);
    ASSERT_EQ(drawing.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeAlternate),
              StatusOk);
    const size_t pending = pwdbPendingRecordCount(drawing);
    EXPECT_GE(pending, static_cast<size_t>(kLines)) << "the lines wait in the file";
    EXPECT_FALSE(drawing.getPwDbObjectId(lines[100]).isErased());
    EXPECT_EQ(pwdbPendingRecordCount(drawing), pending) << "asking ids decodes nothing";
    PwGePoint3d end;
    ASSERT_EQ(OpenLine(drawing, lines[100], &end), StatusOk);
    EXPECT_EQ(end, PwGePoint3d(100, 200, 0));
    EXPECT_EQ(pwdbPendingRecordCount(drawing), pending - 1);
    ASSERT_EQ(drawing.closeInput(true), StatusOk);
    EXPECT_EQ(pwdbPendingRecordCount(drawing), 0u);
    ASSERT_EQ(OpenLine(drawing, lines.back(), &end), StatusOk);
    EXPECT_EQ(end, PwGePoint3d(kLines - 1, 2.0 * (kLines - 1), 0));
}

TEST_F(LazyReading, ALazyAndAWholeReadGiveTheSameDrawingAndTheSameSavedBytes) {
    SaveLines("a.plw");
    PwDbDatabase lazy(false, true);
    PwDbDatabase whole(false, true);
    ASSERT_EQ(lazy.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeShareRead), StatusOk);
    ASSERT_EQ(whole.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeAlternate), StatusOk);
    ASSERT_EQ(whole.closeInput(true), StatusOk);
    EXPECT_EQ(lazy.numObjects(), whole.numObjects());
    // Saved lazily, the records go out as stored; saved whole, each is encoded again.
    ASSERT_EQ(lazy.saveAs(Path("lazy.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent), StatusOk);
    EXPECT_GT(pwdbPendingRecordCount(lazy), 0u) << "saving decoded nothing";
    ASSERT_EQ(whole.saveAs(Path("whole.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent),
              StatusOk);
    EXPECT_EQ(Read("lazy.plw"), Read("whole.plw"));
    EXPECT_EQ(Read("lazy.plw"), Read("a.plw")) << "an unchanged drawing saves to its own bytes";
    PwDbDrawingImage a, b;
    ASSERT_EQ(lazy.captureImage(a, PwDb::PwDbPlwVersionCurrent), StatusOk);
    ASSERT_EQ(whole.captureImage(b, PwDb::PwDbPlwVersionCurrent), StatusOk);
    pwdbfiletest::ExpectSameImage(b, a);
}

TEST_F(LazyReading, AChangedObjectIsSavedFromTheObjectAndTheRestFromTheFile) {
    const auto lines = SaveLines("a.plw");
    PwDbDatabase drawing(false, true);
    ASSERT_EQ(drawing.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeAlternate),
              StatusOk);
    {
        PwDbObjectPointer<PwDbLine> line(drawing.getPwDbObjectId(lines[7]), PwDb::OpenForWrite);
        ASSERT_EQ(line.openStatus(), StatusOk);
        ASSERT_EQ(line->setEndPoint({-1, -2, -3}), StatusOk);
    }
    ASSERT_EQ(drawing.saveAs(Path("b.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent), StatusOk);
    PwDbDatabase again(false, true);
    ASSERT_EQ(again.readPlwFile(Path("b.plw").c_str(), PwDbDatabase::OpenModeAlternate), StatusOk);
    PwGePoint3d end;
    ASSERT_EQ(OpenLine(again, lines[7], &end), StatusOk);
    EXPECT_EQ(end, PwGePoint3d(-1, -2, -3));
    ASSERT_EQ(OpenLine(again, lines[8], &end), StatusOk);
    EXPECT_EQ(end, PwGePoint3d(8, 16, 0));
}

TEST_F(LazyReading, ADamagedRecordIsFoundWhenItIsNeeded) {
    const auto lines = SaveLines("a.plw");
    const PwDbHandle damaged = lines[kLines / 2];
    const auto [offset, length] = PageOf("a.plw", damaged);
    std::string page = Read("a.plw").substr(offset, length);
    page[length / 2] = static_cast<char>(page[length / 2] ^ 0x5A);
    Overwrite("a.plw", offset, page);

    PwDbDatabase drawing(false, true);
    ASSERT_EQ(drawing.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeShareRead), StatusOk)
        << "the front is sound";
    EXPECT_EQ(OpenLine(drawing, lines[0]), StatusOk);
    EXPECT_EQ(OpenLine(drawing, damaged), Plotwright::StatusBadFileFormat);
    EXPECT_EQ(OpenLine(drawing, damaged), Plotwright::StatusBadFileFormat) << "asked again";
    EXPECT_EQ(OpenLine(drawing, lines.back()), StatusOk);
    ExpectASaveFailsAndKeepsItsTarget(drawing);
    // Letting the file go decodes the rest; the damaged record is lost and the call says so.
    EXPECT_EQ(drawing.closeInput(true), Plotwright::StatusBadFileFormat);
    EXPECT_FALSE(drawing.getPwDbObjectId(damaged).isValid());
    EXPECT_EQ(OpenLine(drawing, lines.back()), StatusOk);
}

TEST_F(LazyReading, ADamagedPartOfTheIndexIsFoundWhenItIsNeeded) {
    const auto lines = SaveLines("a.plw");
    const PwDbPlwIndexedFront front = Front("a.plw");
    ASSERT_GT(front.pages.size(), 4u);
    // The run of a page in the middle: the index's part that names its records.
    const PwDbPlwPage& page = front.pages[front.pages.size() / 2];
    std::string run = Read("a.plw").substr(page.runOffset, page.runLength);
    run[0] = static_cast<char>(run[0] ^ 0x01);
    Overwrite("a.plw", page.runOffset, run);

    PwDbDatabase drawing(false, true);
    ASSERT_EQ(drawing.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeShareRead),
              StatusOk);
    EXPECT_EQ(OpenLine(drawing, lines[0]), StatusOk);
    EXPECT_EQ(OpenLine(drawing, page.firstHandle), Plotwright::StatusBadFileFormat);
    EXPECT_EQ(OpenLine(drawing, lines.back()), StatusOk);
    ExpectASaveFailsAndKeepsItsTarget(drawing);
    EXPECT_EQ(drawing.closeInput(true), Plotwright::StatusBadFileFormat);
}

TEST_F(LazyReading, AFileTruncatedUnderAPartlyReadDrawingGivesStatuses) {
    for (const auto mode : {PwDbDatabase::OpenModeAlternate, PwDbDatabase::OpenModeShareRead}) {
        SCOPED_TRACE(mode);
        const auto lines = SaveLines("a.plw");
        PwDbDatabase drawing(false, true);
        ASSERT_EQ(drawing.readPlwFile(Path("a.plw").c_str(), mode), StatusOk);
        ASSERT_EQ(OpenLine(drawing, lines[0]), StatusOk);
        const std::string path = folder + "/a.plw";
        const off_t half = static_cast<off_t>(Read("a.plw").size() / 2);
        ASSERT_EQ(InChildProcess([&] { return truncate(path.c_str(), half) == 0 ? 0 : 1; }), 0);
        // The last pages were read with the index behind them; the middle ones weren't.
        ExpectTheLineOrAStatus(drawing, lines, kLines - 1);
        EXPECT_EQ(OpenLine(drawing, lines[kLines / 2]), Plotwright::StatusBadFileFormat);
        EXPECT_EQ(drawing.closeInput(true), Plotwright::StatusBadFileFormat);
        EXPECT_EQ(OpenLine(drawing, lines[0]), StatusOk) << "what was decoded stays";
    }
}

TEST_F(LazyReading, AFileOverwrittenInPlaceByAnotherProcessGivesStatusesNotWrongObjects) {
    const auto lines = SaveLines("a.plw");
    // Another drawing of the same layout and size, whose line i ends elsewhere.
    {
        auto drawing = PwDbAuthoring::createDrawing();
        for (int i = 0; i < kLines; ++i) {
            PwDbAuthoring::addLine(*drawing, drawing->modelSpaceId(), {0, 0, 0},
                                   {double(i) + 0.5, 2.0 * i, 0});
        }
        ASSERT_EQ(drawing->saveAs(Path("other.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent),
                  StatusOk);
    }
    const std::string other = Read("other.plw");
    ASSERT_EQ(other.size(), Read("a.plw").size());
    PwDbDatabase drawing(false, true);
    ASSERT_EQ(drawing.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeAlternate),
              StatusOk);
    ASSERT_EQ(OpenLine(drawing, lines[0]), StatusOk);
    ASSERT_EQ(InChildProcess([&] {
                  const int fd = open((folder + "/a.plw").c_str(), O_WRONLY);
                  const bool whole = pwrite(fd, other.data(), other.size(), 0) ==
                                     static_cast<ssize_t>(other.size());
                  close(fd);
                  return whole ? 0 : 1;
              }),
              0);
    PwGePoint3d end;
    const Plotwright::ErrorStatus status = OpenLine(drawing, lines[kLines / 2], &end);
    EXPECT_EQ(status, Plotwright::StatusBadFileFormat)
        << "read " << end.x << " where the drawing read held " << kLines / 2;
    ExpectTheLineOrAStatus(drawing, lines, kLines - 1);
}

TEST_F(LazyReading, AFileReplacedUnderAPartlyReadDrawingGivesStatuses) {
    const auto lines = SaveLines("a.plw");
    SaveLines("b.plw");
    PwDbDatabase drawing(false, true);
    ASSERT_EQ(drawing.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeAlternate),
              StatusOk);
    ASSERT_EQ(std::rename((folder + "/b.plw").c_str(), (folder + "/a.plw").c_str()), 0);
    EXPECT_EQ(OpenLine(drawing, lines[kLines / 2]), Plotwright::StatusBadFileFormat);
    ExpectTheLineOrAStatus(drawing, lines, kLines - 1);
    ASSERT_EQ(std::remove((folder + "/a.plw").c_str()), 0);
    EXPECT_EQ(OpenLine(drawing, lines[kLines / 3]), Plotwright::StatusBadFileFormat);
}

TEST_F(LazyReading, ASaveOverTheFileBeingReadKeepsEveryRecord) {
    const auto lines = SaveLines("a.plw");
    const std::string before = Read("a.plw");
    PwDbDatabase drawing(false, true);
    ASSERT_EQ(drawing.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeAlternate),
              StatusOk);
    ASSERT_EQ(drawing.saveAs(Path("a.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    EXPECT_EQ(Read("a.plw"), before);
    // The file read is gone (replaced); what the drawing still wanted of it was kept.
    for (const PwDbHandle handle : {lines[0], lines[kLines / 2], lines.back()}) {
        EXPECT_EQ(OpenLine(drawing, handle), StatusOk);
    }
    EXPECT_EQ(drawing.closeInput(true), StatusOk);
}

TEST_F(LazyReading, RecordsOfEveryKindDecodeAsTheyWereWritten) {
    const auto sample = pwdbfiletest::MakeSampleDrawing();
    for (int i = 0; i < kLines; ++i) {
        PwDbAuthoring::addLine(*sample, sample->modelSpaceId(), {0, 0, 0}, {double(i), 1, 0});
    }
    ASSERT_EQ(sample->saveAs(Path("s.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent), StatusOk);
    PwDbDatabase drawing(false, true);
    ASSERT_EQ(drawing.readPlwFile(Path("s.plw").c_str(), PwDbDatabase::OpenModeShareRead),
              StatusOk);
    PwDbDrawingImage expected, actual;
    ASSERT_EQ(sample->captureImage(expected, PwDb::PwDbPlwVersionCurrent), StatusOk);
    ASSERT_EQ(drawing.captureImage(actual, PwDb::PwDbPlwVersionCurrent), StatusOk);
    pwdbfiletest::ExpectSameImage(expected, actual);
}

}  // namespace

namespace {

// A layer table that lists itself among its records: reading it lazily must not decode it
// inside its own decoding.
TEST_F(LazyReading, ATableThatListsItselfIsReadWithoutRecursing) {
    auto drawing = PwDbAuthoring::createDrawing();
    PwDbDrawingImage image;
    ASSERT_EQ(drawing->captureImage(image, PwDb::PwDbPlwVersionCurrent), StatusOk);
    const PwDbHandle table = drawing->layerTableId().handle();
    bool listed = false;
    for (PwDbObjectRecord& record : image.objects) {
        if (record.handle != table) continue;
        // owner, reactor count, record count, the records: one more, the table itself.
        auto& count = std::get<int32_t>(record.data[2]);
        ++count;
        record.data.insert(record.data.begin() + 3, PwDbMemoryFiler::Handle{table});
        listed = true;
    }
    ASSERT_TRUE(listed);
    std::string bytes;
    ASSERT_EQ(pwdbEncodePlwIndexed(image, bytes), StatusOk);
    Write("self.plw", bytes);
    PwDbDatabase read(false, true);
    ASSERT_EQ(read.readPlwFile(Path("self.plw").c_str(), PwDbDatabase::OpenModeAlternate),
              StatusOk);
    PwDbObjectPointer<PwDbLayerTable> layers(read.layerTableId(), PwDb::OpenForRead);
    ASSERT_EQ(layers.openStatus(), StatusOk);
    EXPECT_TRUE(layers->has(u"0"));
}

}  // namespace
