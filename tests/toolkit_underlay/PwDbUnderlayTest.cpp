// Underlay definitions and placements in drawings on disk: the three kinds, their files and
// keys, load states, reactors, and both file formats.
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>

#include <gtest/gtest.h>

#include <random>

#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayReference.h>

namespace {

using Plotwright::StatusOk;

const std::string kPdf =
    "%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n"
    "2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1>>endobj\n"
    "3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 200 100]>>endobj\n"
    "trailer<</Root 1 0 R>>\n%%EOF\n";

// A V7 design file's first element, the control block: type 9, level 8, 766 words to follow.
std::string DgnV7(bool threeD) {
    std::string dgn(threeD ? "\xC8\x09\xFE\x02" : "\x08\x09\xFE\x02", 4);
    dgn.resize(4 + 2 * 766, '\0');
    return dgn;
}

const std::string kDgnV8("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1\0\0\0\0", 12);

std::string Plf() {
    return std::string(kPwDbPlfSignature, 8) + "sheet data";
}

struct Kind {
    PwRxClass* cls;
    const char* file;
    std::string bytes;
};

class Underlays : public lodeqdbtest::TempFolderTest {
  protected:
    Underlays() : TempFolderTest("pwdb-underlays") {}

    void SetUp() override {
        TempFolderTest::SetUp();
        ASSERT_EQ(system(("mkdir -p '" + folder + "/docs'").c_str()), 0);
        Write("docs/plan.pdf", kPdf);
        Write("docs/site.dgn", DgnV7(false));
        Write("docs/site3d.dgn", DgnV7(true));
        Write("docs/v8.dgn", kDgnV8);
        Write("docs/sheet.plf", Plf());
        Write("docs/notes.txt", "no document at all");
        drawing = PwDbAuthoring::createDrawing();
        ASSERT_EQ(drawing->saveAs(Path("site.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent),
                  StatusOk);
    }

    PwDbObjectId Define(PwRxClass* kind, const wstring& key, const wstring& source,
                        const wstring& item = u"") {
        PwDbObjectId id;
        EXPECT_EQ(PwDbAuthoring::addUnderlayDefinition(*drawing, kind, key, source, item, &id),
                  StatusOk);
        return id;
    }

    std::unique_ptr<PwDbDatabase> drawing;
};

TEST_F(Underlays, EachKindLoadsItsOwnFiles) {
    const std::pair<PwRxClass*, const char16_t*> cases[] = {
        {PwDbPdfDefinition::desc(), u"docs/plan.pdf"},
        {PwDbDgnDefinition::desc(), u"docs\\site.dgn"},
        {PwDbDgnDefinition::desc(), u"docs/site3d.dgn"},
        {PwDbDgnDefinition::desc(), u"docs/v8.dgn"},
        {PwDbPlfDefinition::desc(), u"docs\\sheet.plf"}};
    int n = 0;
    for (const auto& [kind, source] : cases) {
        const std::u16string name{u'K', static_cast<char16_t>(u'0' + n++)};
        const PwDbObjectId id = Define(kind, name, source);
        PwDbObjectPointer<PwDbUnderlayDefinition> definition(id, PwDb::OpenForWrite);
        EXPECT_FALSE(definition->isLoaded());
        ASSERT_EQ(definition->load(nullptr), StatusOk) << n;
        EXPECT_TRUE(definition->isLoaded());
        PwString active;
        ASSERT_EQ(definition->getActiveFileName(active), StatusOk);
        wstring expected = Path("") + source;
        for (char16_t& unit : expected)
            if (unit == u'\\') unit = u'/';
        EXPECT_EQ(wstring(active.kwszPtr()), expected);
        EXPECT_EQ(wstring(definition->getSourceFileName()), source);
    }
}

TEST_F(Underlays, AFileOfAnotherKindOrOfNoneIsRefused) {
    const std::pair<PwRxClass*, const char16_t*> cases[] = {
        {PwDbPdfDefinition::desc(), u"docs/site.dgn"},
        {PwDbDgnDefinition::desc(), u"docs/plan.pdf"},
        {PwDbPlfDefinition::desc(), u"docs/notes.txt"},
        {PwDbDgnDefinition::desc(), u"docs/sheet.plf"}};
    int n = 0;
    for (const auto& [kind, source] : cases) {
        PwDbObjectPointer<PwDbUnderlayDefinition> definition(
            Define(kind, std::u16string{u'K', static_cast<char16_t>(u'0' + n++)}, source),
            PwDb::OpenForWrite);
        EXPECT_EQ(definition->load(nullptr), Plotwright::StatusBadFileFormat) << n;
        EXPECT_FALSE(definition->isLoaded());
    }
}

TEST_F(Underlays, AMissingFileHasNoActiveName) {
    PwDbObjectPointer<PwDbUnderlayDefinition> definition(
        Define(PwDbPdfDefinition::desc(), u"GONE", u"docs/gone.pdf"), PwDb::OpenForWrite);
    PwString active(u"stale");
    EXPECT_EQ(definition->getActiveFileName(active), Plotwright::StatusFileNotFound);
    EXPECT_TRUE(active.isEmpty());
    EXPECT_EQ(definition->load(nullptr), Plotwright::StatusFileNotFound);
    EXPECT_FALSE(definition->isLoaded());
    PwDbObjectPointer<PwDbUnderlayDefinition> unnamed(
        Define(PwDbPdfDefinition::desc(), u"EMPTY", u""), PwDb::OpenForWrite);
    EXPECT_EQ(unnamed->load(nullptr), Plotwright::StatusFileNotFound);
    EXPECT_EQ(unnamed->getActiveFileName(active), Plotwright::StatusFileNotFound);
}

TEST_F(Underlays, AnUnloadedDefinitionStillFindsItsFile) {
    PwDbObjectPointer<PwDbUnderlayDefinition> definition(
        Define(PwDbPdfDefinition::desc(), u"PLAN", u"docs/plan.pdf"), PwDb::OpenForRead);
    PwString active;
    ASSERT_EQ(definition->getActiveFileName(active), StatusOk);
    EXPECT_EQ(wstring(active.kwszPtr()), Path("docs/plan.pdf"));
    EXPECT_FALSE(definition->isLoaded());
}

TEST_F(Underlays, UnloadingAndANewSourceNameForgetTheFile) {
    PwDbObjectPointer<PwDbUnderlayDefinition> definition(
        Define(PwDbPdfDefinition::desc(), u"PLAN", u"docs/plan.pdf"), PwDb::OpenForWrite);
    ASSERT_EQ(definition->load(nullptr), StatusOk);
    definition->unload();
    EXPECT_FALSE(definition->isLoaded());
    ASSERT_EQ(definition->load(u"a password nobody needs"), StatusOk);
    ASSERT_EQ(definition->setSourceFileName(u"docs/plan.pdf"), StatusOk);
    EXPECT_TRUE(definition->isLoaded());
    ASSERT_EQ(definition->setSourceFileName(u"docs/other.pdf"), StatusOk);
    EXPECT_FALSE(definition->isLoaded());
    PwString active;
    EXPECT_EQ(definition->getActiveFileName(active), Plotwright::StatusFileNotFound);
}

TEST_F(Underlays, ChangesNeedAWriteOpen) {
    PwDbObjectPointer<PwDbUnderlayDefinition> definition(
        Define(PwDbPdfDefinition::desc(), u"PLAN", u"docs/plan.pdf", u"1"), PwDb::OpenForRead);
    EXPECT_EQ(definition->setSourceFileName(u"x.pdf"), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(definition->setItemName(u"2"), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(definition->load(nullptr), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(wstring(definition->getItemName()), u"1");
}

TEST_F(Underlays, EachKindHasItsOwnKeyInTheRootDictionary) {
    const wstring pdf = PwDbUnderlayDefinition::dictionaryKey(PwDbPdfDefinition::desc()).kwszPtr();
    const wstring dgn = PwDbUnderlayDefinition::dictionaryKey(PwDbDgnDefinition::desc()).kwszPtr();
    const wstring plf = PwDbUnderlayDefinition::dictionaryKey(PwDbPlfDefinition::desc()).kwszPtr();
    EXPECT_FALSE(pdf.empty());
    EXPECT_NE(pdf, dgn);
    EXPECT_NE(dgn, plf);
    EXPECT_NE(pdf, plf);
    EXPECT_TRUE(PwDbUnderlayDefinition::dictionaryKey(nullptr).isEmpty());
    EXPECT_TRUE(PwDbUnderlayDefinition::dictionaryKey(PwDbDictionary::desc()).isEmpty());
    EXPECT_TRUE(PwDbUnderlayDefinition::dictionaryKey(PwDbUnderlayDefinition::desc()).isEmpty());

    const PwDbObjectId plan = Define(PwDbPdfDefinition::desc(), u"PLAN", u"docs/plan.pdf");
    {
        PwDbObjectPointer<PwDbDictionary> root(drawing->namedObjectsDictionaryId(),
                                               PwDb::OpenForRead);
        PwDbObjectId pdfDictionary;
        ASSERT_EQ(root->getAt(pdf.c_str(), pdfDictionary), StatusOk);
        PwDbObjectId ignored;
        EXPECT_EQ(root->getAt(dgn.c_str(), ignored), Plotwright::StatusKeyNotFound);
        PwDbObjectPointer<PwDbDictionary> definitions(pdfDictionary, PwDb::OpenForRead);
        PwDbObjectId found;
        ASSERT_EQ(definitions->getAt(u"PLAN", found), StatusOk);
        EXPECT_EQ(found, plan);
    }
    EXPECT_EQ(PwDbAuthoring::addUnderlayDefinition(*drawing, PwDbPdfDefinition::desc(), u"plan",
                                                   u"x.pdf", u""),
              Plotwright::StatusDuplicateKey);
    EXPECT_EQ(
        PwDbAuthoring::addUnderlayDefinition(*drawing, PwDbDictionary::desc(), u"X", u"x.pdf", u""),
        Plotwright::StatusInvalidInput);
}

TEST_F(Underlays, PlacementsAreTheReactorsOfTheirDefinition) {
    const PwDbObjectId plan = Define(PwDbPdfDefinition::desc(), u"PLAN", u"docs/plan.pdf");
    const PwDbObjectId site = Define(PwDbDgnDefinition::desc(), u"SITE", u"docs/site.dgn");
    PwDbObjectId first, second, other;
    ASSERT_EQ(PwDbAuthoring::addUnderlayReference(*drawing, drawing->modelSpaceId(), plan,
                                                  {1, 2, 3}, {2, 2, 1}, {}, &first),
              StatusOk);
    ASSERT_EQ(PwDbAuthoring::addUnderlayReference(*drawing, drawing->paperSpaceId(), plan, {}, {},
                                                  {}, &second),
              StatusOk);
    ASSERT_EQ(PwDbAuthoring::addUnderlayReference(*drawing, drawing->modelSpaceId(), site, {}, {},
                                                  {}, &other),
              StatusOk);
    PwDbObjectPointer<PwDbUnderlayDefinition> definition(plan, PwDb::OpenForRead);
    const PwArray<void*>* reactors = definition->reactors();
    ASSERT_NE(reactors, nullptr);
    ASSERT_EQ(reactors->length(), 2u);
    EXPECT_EQ(pwdbPersistentReactorObjectId(reactors->at(0)), first);
    EXPECT_EQ(pwdbPersistentReactorObjectId(reactors->at(1)), second);
    for (size_t i = 0; i < reactors->length(); ++i) {
        PwDbObjectPointer<PwDbUnderlayReference> placement(
            pwdbPersistentReactorObjectId(reactors->at(i)), PwDb::OpenForRead);
        EXPECT_EQ(placement->definitionId(), plan);
    }
    EXPECT_FALSE(definition->hasPersistentReactor(other));
    PwDbObjectPointer<PwDbUnderlayReference> placed(first, PwDb::OpenForRead);
    EXPECT_EQ(placed->position(), PwGePoint3d(1, 2, 3));
    EXPECT_EQ(placed->scaleFactors(), PwGeScale3d(2, 2, 1));
}

TEST_F(Underlays, ThePlacementsValuesAreChecked) {
    PwDbUnderlayReference reference;
    EXPECT_EQ(reference.setScaleFactors({0, 1, 1}), Plotwright::StatusInvalidInput);
    EXPECT_EQ(reference.setPosition({INFINITY, 0, 0}), Plotwright::StatusInvalidInput);
    EXPECT_EQ(reference.setRotation(NAN), Plotwright::StatusInvalidInput);
    EXPECT_EQ(reference.setRotation(1.5), StatusOk);
    auto other = PwDbAuthoring::createDrawing();
    const PwDbObjectId plan = Define(PwDbPdfDefinition::desc(), u"PLAN", u"docs/plan.pdf");
    EXPECT_EQ(PwDbAuthoring::addUnderlayReference(*other, other->modelSpaceId(), plan, {}),
              Plotwright::StatusWrongDatabase);
}

class UnderlaysInFiles : public Underlays,
                         public testing::WithParamInterface<std::pair<bool, int>> {};

TEST_P(UnderlaysInFiles, DefinitionsPlacementsAndReactorsSurviveASave) {
    const auto [exchange, version] = GetParam();
    const PwDbObjectId plan =
        Define(PwDbPdfDefinition::desc(), u"PLAN", u"docs\\plan.pdf", u"Page 2");
    Define(PwDbDgnDefinition::desc(), u"SITE", u"/srv/dgn/site.dgn", u"Default");
    Define(PwDbPlfDefinition::desc(), u"SHEET", u"https://example.com/a.plf", u"A1");
    PwDbObjectId placed;
    ASSERT_EQ(PwDbAuthoring::addUnderlayReference(*drawing, drawing->modelSpaceId(), plan,
                                                  {0.5, 1e-9, -3}, {2, -1, 0.25}, {}, &placed),
              StatusOk);
    {
        PwDbObjectPointer<PwDbUnderlayReference> reference(placed, PwDb::OpenForWrite);
        ASSERT_EQ(reference->setRotation(0.75), StatusOk);
        PwDbObjectPointer<PwDbUnderlayDefinition> definition(plan, PwDb::OpenForWrite);
        ASSERT_EQ(definition->load(nullptr), StatusOk);
    }
    const wstring path = Path(exchange ? "copy.plx" : "copy.plw");
    const auto v = static_cast<PwDb::PwDbPlwVersion>(version);
    ASSERT_EQ(
        exchange ? drawing->plxOut(path.c_str(), 16, v) : drawing->saveAs(path.c_str(), false, v),
        StatusOk);
    PwDbDatabase read;
    ASSERT_EQ(exchange ? read.plxIn(path.c_str()) : read.readPlwFile(path.c_str()), StatusOk);

    PwDbObjectPointer<PwDbDictionary> root(read.namedObjectsDictionaryId(), PwDb::OpenForRead);
    const std::tuple<PwRxClass*, const char16_t*, const char16_t*, const char16_t*> expected[] = {
        {PwDbPdfDefinition::desc(), u"PLAN", u"docs\\plan.pdf", u"Page 2"},
        {PwDbDgnDefinition::desc(), u"SITE", u"/srv/dgn/site.dgn", u"Default"},
        {PwDbPlfDefinition::desc(), u"SHEET", u"https://example.com/a.plf", u"A1"}};
    PwDbObjectId readPlan;
    for (const auto& [kind, key, source, item] : expected) {
        PwDbObjectId dictionaryId;
        ASSERT_EQ(root->getAt(PwDbUnderlayDefinition::dictionaryKey(kind).kwszPtr(), dictionaryId),
                  StatusOk);
        PwDbObjectPointer<PwDbDictionary> dictionary(dictionaryId, PwDb::OpenForRead);
        PwDbObjectId id;
        ASSERT_EQ(dictionary->getAt(key, id), StatusOk);
        PwDbObjectPointer<PwDbUnderlayDefinition> definition(id, PwDb::OpenForRead);
        EXPECT_TRUE(definition->isKindOf(kind));
        EXPECT_EQ(wstring(definition->getSourceFileName()), source);
        EXPECT_EQ(wstring(definition->getItemName()), item);
        EXPECT_FALSE(definition->isLoaded());
        if (kind == PwDbPdfDefinition::desc()) readPlan = id;
    }
    PwDbObjectPointer<PwDbUnderlayDefinition> definition(readPlan, PwDb::OpenForRead);
    ASSERT_NE(definition->reactors(), nullptr);
    const PwDbObjectId readPlaced = pwdbPersistentReactorObjectId(definition->reactors()->at(0));
    PwDbObjectPointer<PwDbUnderlayReference> reference(readPlaced, PwDb::OpenForRead);
    ASSERT_EQ(reference.openStatus(), StatusOk);
    EXPECT_EQ(reference->definitionId(), readPlan);
    EXPECT_EQ(reference->position(), PwGePoint3d(0.5, 1e-9, -3));
    EXPECT_EQ(reference->scaleFactors(), PwGeScale3d(2, -1, 0.25));
    EXPECT_EQ(reference->rotation(), 0.75);
}

INSTANTIATE_TEST_SUITE_P(BothFormats, UnderlaysInFiles,
                         testing::Values(std::pair{false, 16}, std::pair{false, 33},
                                         std::pair{true, 16}, std::pair{true, 33}));

TEST(UnderlayFileKinds, EveryPrefixAndRandomBytesGiveAnAnswer) {
    const std::pair<std::string, PwDbUnderlayFileKind> samples[] = {
        {kPdf, PwDbUnderlayFileKind::Pdf},
        {DgnV7(false), PwDbUnderlayFileKind::Dgn},
        {DgnV7(true), PwDbUnderlayFileKind::Dgn},
        {kDgnV8, PwDbUnderlayFileKind::Dgn},
        {Plf(), PwDbUnderlayFileKind::Plf}};
    for (const auto& [bytes, kind] : samples) {
        EXPECT_EQ(pwdbUnderlayKindOfBytes(bytes), kind);
        for (size_t size = 0; size < bytes.size(); ++size) {
            const PwDbUnderlayFileKind found = pwdbUnderlayKindOfBytes(bytes.substr(0, size));
            EXPECT_TRUE(found == kind || found == PwDbUnderlayFileKind::Unknown) << size;
        }
    }
    std::mt19937 random(7);
    for (int round = 0; round < 1000; ++round) {
        std::string bytes(random() % 64, '\0');
        for (char& byte : bytes) byte = static_cast<char>(random());
        pwdbUnderlayKindOfBytes(bytes);
    }
    // A PDF marker after the first 1024 bytes doesn't count.
    EXPECT_EQ(pwdbUnderlayKindOfBytes(std::string(1024, ' ') + "%PDF-1.7"),
              PwDbUnderlayFileKind::Unknown);
    EXPECT_EQ(pwdbUnderlayKindOfBytes(std::string(1019, ' ') + "%PDF-1.7"),
              PwDbUnderlayFileKind::Pdf);
    // A deleted control block, and one with too few words, are no design file.
    EXPECT_EQ(pwdbUnderlayKindOfBytes(std::string("\x08\x89\xFE\x02", 4)),
              PwDbUnderlayFileKind::Unknown);
    EXPECT_EQ(pwdbUnderlayKindOfBytes(std::string("\x08\x09\x02\x00", 4)),
              PwDbUnderlayFileKind::Unknown);
}

class UnderlayFiles : public lodeqdbtest::TempFolderTest {
  protected:
    UnderlayFiles() : TempFolderTest("pwdb-underlay-files") {}
};

TEST_F(UnderlayFiles, EmptyMissingAndFolderPathsAreAnswered) {
    PwDbUnderlayFileKind kind = PwDbUnderlayFileKind::Pdf;
    Write("empty.pdf", "");
    EXPECT_EQ(pwdbUnderlayFileKind(Path("empty.pdf"), kind), StatusOk);
    EXPECT_EQ(kind, PwDbUnderlayFileKind::Unknown);
    EXPECT_EQ(pwdbUnderlayFileKind(Path("missing.pdf"), kind), Plotwright::StatusFileNotFound);
    EXPECT_EQ(pwdbUnderlayFileKind(Path(""), kind), Plotwright::StatusFileNotFound);
    Write("plan.pdf", kPdf);
    EXPECT_EQ(pwdbUnderlayFileKind(Path("plan.pdf"), kind), StatusOk);
    EXPECT_EQ(kind, PwDbUnderlayFileKind::Pdf);
}

}  // namespace
