// The generation and the kind of application of drawings written by the toolkit.
#include <gtest/gtest.h>

#include <lodeqdb/identification/CreatorKind.h>
#include <lodeqdb/identification/FileFormat.h>
#include <lodeqdb/identification/PropertySet.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>
#include <lodeqdb/toolkit/db/PwDbProxyObject.h>

namespace {

using Plotwright::StatusOk;

class Classification : public lodeqdbtest::TempFolderTest {
  protected:
    Classification() : TempFolderTest("lodeqdb-classify") {}

    wstring SaveAs(PwDbDatabase& drawing, const std::string& name, int version,
                   bool becomesFile = false) {
        const wstring path = Path(name);
        EXPECT_EQ(
            drawing.saveAs(path.c_str(), becomesFile, static_cast<PwDb::PwDbPlwVersion>(version)),
            StatusOk);
        return path;
    }
    wstring SavePlx(PwDbDatabase& drawing, const std::string& name, int version) {
        const wstring path = Path(name);
        EXPECT_EQ(drawing.plxOut(path.c_str(), 16, static_cast<PwDb::PwDbPlwVersion>(version)),
                  StatusOk);
        return path;
    }
    static std::unique_ptr<PwDbDatabase> Read(const wstring& path) {
        auto database = std::make_unique<PwDbDatabase>(false, true);
        const bool exchange = path.size() > 4 && path.substr(path.size() - 4) == u".plx";
        EXPECT_EQ(exchange ? database->plxIn(path.c_str())
                           : database->readPlwFile(path.c_str(), PwDbDatabase::OpenModeAlternate),
                  StatusOk);
        return database;
    }
    static void AddKey(PwDbDatabase& drawing, const wstring& key, PwDbObject* object = nullptr) {
        if (object == nullptr) object = new PwDbDictionary;
        ASSERT_EQ(PwDbAuthoring::addDictionaryEntry(drawing, drawing.namedObjectsDictionaryId(),
                                                    key, object),
                  StatusOk);
    }
    static PwDbProxyObject* Proxy(const wstring& className) {
        auto* proxy = new PwDbProxyObject;
        proxy->setProxiedClassChain({className, u"PwDbObject"});
        return proxy;
    }

    std::unique_ptr<PwDbDatabase> drawing = PwDbAuthoring::createDrawing();
};

// A host whose saved drawings carry another owner GUID.
class OwnedBy {
  public:
    explicit OwnedBy(const wstring& owner) {
        services_.setApplicationIdentity(owner, u"Tester");
        previous_ = pwdbSetHostApplicationServices(&services_);
    }
    ~OwnedBy() { pwdbSetHostApplicationServices(previous_); }

  private:
    PwDbHostApplicationServices services_;
    PwDbHostApplicationServices* previous_;
};

TEST_F(Classification, TheNewestPairIsCurrentUnderAnyName) {
    auto read = Read(SaveAs(*drawing, "a.plw", 33));
    const wstring empty;
    EXPECT_EQ(LodeQDBUtil::GetPlotwrightFileFormat(*read, &empty), lode::FormatCurrent);
    const wstring other = u"x.txt";
    EXPECT_EQ(LodeQDBUtil::GetPlotwrightFileFormat(*read, &other), lode::FormatCurrent);
}

TEST_F(Classification, EveryPairFrom22OnHasItsGeneration) {
    for (int version = 22; version <= 33; ++version) {
        auto read = Read(SaveAs(*drawing, "v.plw", version));
        EXPECT_EQ(LodeQDBUtil::GetPlotwrightFileFormat(*read, nullptr), (version - 22) / 2 + 3)
            << version;
        EXPECT_EQ(LodeQDBUtil::GetPlotwrightFileFormat(Path("v.plw")), (version - 22) / 2 + 3);
    }
}

TEST_F(Classification, TheLastSaveCountsBeforeTheOriginal) {
    auto read = Read(SaveAs(*drawing, "a.plw", 29));
    EXPECT_EQ(LodeQDBUtil::GetPlotwrightFileFormat(*read, nullptr), lode::FormatGeneration6);
    auto current = Read(SaveAs(*drawing, "b.plw", 33));
    SaveAs(*current, "copy.plw", 23);
    EXPECT_EQ(current->lastSavedAsVersion(), 23);
    EXPECT_EQ(LodeQDBUtil::GetPlotwrightFileFormat(*current, nullptr), lode::FormatGeneration3);
}

TEST_F(Classification, TheOldestVersionsCountOnlyUnderTheirOwnKindOfName) {
    auto native21 = Read(SaveAs(*drawing, "a21.plw", 21));
    EXPECT_EQ(LodeQDBUtil::GetPlotwrightFileFormat(*native21, nullptr), lode::FormatOldestPlw);
    const wstring bare = u"/srv/a21";
    EXPECT_EQ(LodeQDBUtil::GetPlotwrightFileFormat(*native21, &bare), lode::FormatUnsupported);
    const wstring asPlx = u"/srv/a21.plx";
    EXPECT_EQ(LodeQDBUtil::GetPlotwrightFileFormat(*native21, &asPlx), lode::FormatUnsupported);

    auto exchange16 = Read(SavePlx(*drawing, "a16.plx", 16));
    EXPECT_EQ(LodeQDBUtil::GetPlotwrightFileFormat(*exchange16, nullptr), lode::FormatOldestPlx);
    EXPECT_EQ(LodeQDBUtil::GetPlotwrightFileFormat(Path("a16.plx")), lode::FormatOldestPlx);
    const wstring asPlw = u"/srv/a16.plw";
    EXPECT_EQ(LodeQDBUtil::GetPlotwrightFileFormat(*exchange16, &asPlw), lode::FormatUnsupported);
    for (int version : {16, 17, 18, 19, 20}) {
        auto read = Read(SaveAs(*drawing, "old.plw", version));
        EXPECT_EQ(LodeQDBUtil::GetPlotwrightFileFormat(*read, nullptr), lode::FormatUnsupported)
            << version;
    }
}

TEST_F(Classification, ADrawingWithoutANameAndAnOldVersionIsUnsupported) {
    auto read = Read(SaveAs(*drawing, "a.plw", 21));
    read->setFilename(u"");
    const wstring empty;
    EXPECT_EQ(LodeQDBUtil::GetPlotwrightFileFormat(*read, &empty), lode::FormatUnsupported);
}

TEST_F(Classification, ChecksSplitTheGenerations) {
    for (int format = 0; format <= 8; ++format) {
        const auto value = static_cast<lode::PlotwrightFileFormat>(format);
        EXPECT_EQ(LodeQDBUtil::CheckForCurrentPlotwrightFileVersion(value), format == 8);
        EXPECT_EQ(LodeQDBUtil::CheckForUnsupportedPlotwrightFileVersion(value), format == 0);
        EXPECT_EQ(LodeQDBUtil::CheckForPreviousPlotwrightFileVersion(value),
                  format >= 1 && format <= 7);
    }
    auto read = Read(SaveAs(*drawing, "a.plw", 27));
    EXPECT_TRUE(LodeQDBUtil::CheckForPreviousPlotwrightFileVersion(*read));
    EXPECT_FALSE(LodeQDBUtil::CheckForCurrentPlotwrightFileVersion(*read));
    EXPECT_FALSE(LodeQDBUtil::CheckForUnsupportedPlotwrightFileVersion(*read));
}

TEST_F(Classification, AFileThatCantBeReadThrowsWithItsPath) {
    EXPECT_THROW(LodeQDBUtil::GetPlotwrightFileFormat(Path("missing.plw")), lode::NotFound);
    Write("junk.plw", "junk");
    EXPECT_THROW(LodeQDBUtil::GetPlotwrightFileFormat(Path("junk.plw")), lode::InvalidFormat);
}

TEST_F(Classification, EachOwnerOfTheTableGivesItsTypeByHeader) {
    const wchar_t* owners[] = {
        L"{F29F85E0-4FF9-1068-AB91-08002B27B3D9}", L"{80B0F5DE-B452-44BF-A155-2467B0E9D531}",
        L"{DE84900D-6D4B-7345-89E6-FB89C7CF723F}", L"{56A0F03C-50A5-425E-B919-1E5E40FA0168}",
        L"{301E83C1-5F59-4A64-B031-6AE544A7D9BF}", L"{B17CF44B-99FD-4171-A4AF-D099AD2ECED9}"};
    for (int row = 0; row < 6; ++row) {
        const wstring owner(owners[row], owners[row] + std::wcslen(owners[row]));
        OwnedBy host(owner);
        const wstring path = SaveAs(*drawing, "owned.plw", 33);
        EXPECT_EQ(LodeQDBUtil::GetPlwFileTypeByHeader(path), row + 1) << row;
        EXPECT_EQ(LodeQDBUtil::GetPlwFileType(path), row + 1) << row;
        EXPECT_EQ(LodeQDBUtil::IsGearmarkPlwByHeader(path), row + 1 == 3);
        EXPECT_EQ(LodeQDBUtil::GetPlwCreatorName(path), u"Tester");
    }
}

TEST_F(Classification, AnUnknownOwnerIsZeroWithoutTheDatabaseBeingRead) {
    AddKey(*drawing, u"GMD_DICT_ROOT");
    OwnedBy host(u"{00000000-1111-2222-3333-444444444444}");
    const wstring path = SaveAs(*drawing, "unknown.plw", 33);
    EXPECT_EQ(LodeQDBUtil::GetPlwFileTypeByHeader(path), lode::PlwTypeUnknown);
    EXPECT_EQ(LodeQDBUtil::GetPlwFileType(path), lode::PlwTypeUnknown);
}

TEST_F(Classification, AnOwnerThatIsNoGuidIsNoOwnerInfo) {
    OwnedBy host(u"not a guid");
    const wstring path = SaveAs(*drawing, "bad.plw", 33);
    EXPECT_THROW(LodeQDBUtil::GetPlwFileTypeByHeader(path), lode::NoOwnerInfo);
    EXPECT_FALSE(LodeQDBUtil::IsGearmarkPlwByHeader(path));
    // The fallback reads the drawing.
    EXPECT_EQ(LodeQDBUtil::GetPlwFileType(path), lode::PlwTypePlain);
}

TEST_F(Classification, AnOldHeaderFallsBackOnTheDatabase) {
    AddKey(*drawing, u"GMD_DICT_ROOT");
    const wstring path = SaveAs(*drawing, "old.plw", 22);
    EXPECT_THROW(LodeQDBUtil::GetPlwFileTypeByHeader(path), lode::NoAppInfo);
    EXPECT_THROW(LodeQDBUtil::GetPlwCreatorName(path), lode::NoAppInfo);
    EXPECT_EQ(LodeQDBUtil::GetPlwFileType(path), lode::PlwTypeGearmark);
}

TEST_F(Classification, AFileNeitherHeaderNorDatabaseCanReadThrowsWithoutItsName) {
    Write("junk.plw", "junk");
    try {
        LodeQDBUtil::GetPlwFileType(Path("junk.plw"));
        FAIL();
    } catch (const lode::InvalidFormat& error) {
        EXPECT_EQ(error.message().find(Path("junk.plw")), wstring::npos);
    }
    EXPECT_THROW(LodeQDBUtil::GetPlwFileType(Path("missing.plw")), lode::NotFound);
}

TEST_F(Classification, TheMarkerBlockIsTestedFirst) {
    ASSERT_EQ(PwDbAuthoring::addBlock(*drawing, u"zk_m"), StatusOk);
    AddKey(*drawing, u"GMD_DICT_ROOT");
    EXPECT_EQ(LodeQDBUtil::GetPlwFileTypeByDatabase(*drawing), lode::PlwTypeMarkerBlock);
    auto read = Read(SaveAs(*drawing, "a.plw", 33));
    EXPECT_EQ(LodeQDBUtil::GetPlwFileTypeByDatabase(*read), lode::PlwTypeMarkerBlock);
}

TEST_F(Classification, TheGearmarkKeyComesBeforeTheScope) {
    AddKey(*drawing, u"GMD_DICT_ROOT");
    AddKey(*drawing, u"ZEMA_SCOPE_NAME");
    EXPECT_EQ(LodeQDBUtil::GetPlwFileTypeByDatabase(*drawing), lode::PlwTypeGearmark);
    EXPECT_TRUE(LodeQDBUtil::IsGearmarkPlwByDatabase(*drawing));
}

TEST_F(Classification, AScopeIsAMasterWithItsMasterKey) {
    AddKey(*drawing, u"ZEMA_SCOPE_NAME");
    AddKey(*drawing, u"Root", Proxy(u"ZephDbTreeNode"));
    EXPECT_EQ(LodeQDBUtil::GetPlwFileTypeByDatabase(*drawing), lode::PlwTypeScope);
    AddKey(*drawing, u"ZASGREF_MASTER");
    EXPECT_EQ(LodeQDBUtil::GetPlwFileTypeByDatabase(*drawing), lode::PlwTypeScopeMaster);
}

TEST_F(Classification, ARootProxyOfTheTreeNodeClassIsATreeNodeDrawing) {
    AddKey(*drawing, u"Root", Proxy(u"ZephDbTreeNode"));
    EXPECT_EQ(LodeQDBUtil::GetPlwFileTypeByDatabase(*drawing), lode::PlwTypeTreeNode);
    auto read = Read(SaveAs(*drawing, "tree.plw", 33));
    EXPECT_EQ(LodeQDBUtil::GetPlwFileTypeByDatabase(*read), lode::PlwTypeTreeNode);
    auto exchange = Read(SavePlx(*drawing, "tree.plx", 33));
    EXPECT_EQ(LodeQDBUtil::GetPlwFileTypeByDatabase(*exchange), lode::PlwTypeTreeNode);
}

TEST_F(Classification, ARootThatIsNoProxyOrOfAnotherClassIsPlain) {
    auto other = PwDbAuthoring::createDrawing();
    AddKey(*other, u"Root", Proxy(u"ZephDbOtherNode"));
    EXPECT_EQ(LodeQDBUtil::GetPlwFileTypeByDatabase(*other), lode::PlwTypePlain);
    AddKey(*drawing, u"Root");
    EXPECT_EQ(LodeQDBUtil::GetPlwFileTypeByDatabase(*drawing), lode::PlwTypePlain);
    EXPECT_EQ(LodeQDBUtil::GetPlwFileTypeByDatabase(*PwDbAuthoring::createDrawing()),
              lode::PlwTypePlain);
}

TEST_F(Classification, ANullDatabaseIsAReadError) {
    EXPECT_THROW(LodeQDBUtil::GetPlwFileTypeByDatabase(nullptr), lode::ReadError);
}

TEST_F(Classification, TheHostKindTellsAnInkstoneHost) {
    EXPECT_TRUE(LodeQDBUtil::IsInkstoneHostApp());
    PwDbHostApplicationServices* previous = pwdbSetHostApplicationServices(nullptr);
    EXPECT_FALSE(LodeQDBUtil::IsInkstoneHostApp());
    pwdbSetHostApplicationServices(previous);
}

}  // namespace
