// Several threads reading, walking and classifying different drawings at once: each thread's
// answers equal those of the same questions asked on one thread, and (under ThreadSanitizer)
// nothing of the process-wide state races. Each test runs in a process of its own, so the
// first uses of the class registry, the module loader and the message texts happen on several
// threads at once.
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <lodeqdb/contents/Layers.h>
#include <lodeqdb/identification/CreatorKind.h>
#include <lodeqdb/identification/FileFormat.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/platform/MessageTexts.h>
#include <lodeqdb/readsave/DgnModule.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/service/ChildrenQuery.h>
#include <lodeqdb/service/DgnChildren.h>
#include <lodeqdb/service/TreeWalks.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/vocabulary/FormatGeneration.h>
#include "support/TempFolderTest.h"
#include "threads/ThreadProjects.h"

namespace {

constexpr int kThreads = 4;
constexpr int kRounds = 3;
constexpr int kDepth = 6;

using Question = std::function<void(const std::string& folder, std::ostringstream& out)>;

// A record as text, its name relative to the thread's folder, so that folders compare.
void Show(std::ostringstream& out, const std::string& folder,
          const std::vector<LodeQDBService::FileData>& records) {
    for (const auto& record : records) {
        std::string name = LodeUtil::Utf8FromUtf16(record.GetFullname());
        if (name.rfind(folder, 0) == 0) name = name.substr(folder.size());
        out << name << ' ' << record.GetType() << ' ' << record.GetXrefStatus() << ' '
            << (record.GetRefId() != 0) << '\n';
    }
}

wstring In(const std::string& folder, const std::string& name) {
    return LodeUtil::Utf16FromUtf8(folder + "/" + name);
}

// Runs `body`, writing the class, code and message of the library exception it throws.
void Failure(std::ostringstream& out, const std::function<void()>& body) {
    try {
        body();
        out << "no failure\n";
    } catch (const lode::LodeException& error) {
        out << lode::ExceptionClassName(error) << ' ' << error.code() << ' '
            << (error.message().empty() ? "no message" : "a message") << '\n';
    }
}

void Walk(const std::string& folder, std::ostringstream& out) {
    LodeQDBService::Request::WalkStop stop;
    Show(out, folder,
         LodeQDBService::Request::PlotwrightNestedChildren(In(folder, "root.plw"), true, stop));
    out << "stopped " << stop.stopped << '\n';
    Show(out, folder, LodeQDBService::Request::PlotwrightChildren(In(folder, "root.plx"), nullptr));
    Show(out, folder, LodeQDBService::Request::DGNChildren(In(folder, "g0.dgn")));
}

void ReadAndQuery(const std::string& folder, std::ostringstream& out) {
    PwDbDatabase drawing(false, true);
    LodeQDBUtil::ReadFileToDatabase(In(folder, "root.plw"), drawing, true, true);
    Show(out, folder, LodeQDBService::Request::PlotwrightChildren(drawing, nullptr));
    Show(out, folder,
         LodeQDBService::Request::PlotwrightParents(In(folder, "root.plw"), drawing,
                                                    In(folder, "d4.plw")));
    out << "type " << LodeQDBUtil::GetPlwFileTypeByDatabase(drawing) << " format "
        << LodeQDBUtil::GetPlotwrightFileFormat(drawing, nullptr) << '\n';
    for (const auto& layer : LodeQDBUtil::Layer::GetPlwLayers(In(folder, "d2.plw")))
        out << "layer " << LodeUtil::Utf8FromUtf16(layer.name) << '\n';
    Failure(out, [&] {
        PwDbDatabase broken(false, true);
        LodeQDBUtil::ReadFileToDatabase(In(folder, "broken.plw"), broken, true, false);
    });
    Failure(out, [&] {
        PwDbDatabase missing(false, true);
        LodeQDBUtil::ReadFileToDatabase(In(folder, "nothing.plw"), missing, true, false);
    });
}

void Classify(const std::string& folder, std::ostringstream& out) {
    out << "header " << LodeQDBUtil::GetPlwFileTypeByHeader(In(folder, "d1.plw")) << '\n';
    out << "type " << LodeQDBUtil::GetPlwFileType(In(folder, "d3.plw")) << '\n';
    out << "creator " << LodeUtil::Utf8FromUtf16(LodeQDBUtil::GetPlwCreatorName(In(folder, "root.plw")))
        << '\n';
    out << "format " << LodeQDBUtil::GetPlotwrightFileFormat(In(folder, "root.plx")) << ' '
        << LodeQDBUtil::GetPlotwrightFileFormat(In(folder, "d5.plw")) << '\n';
    out << "dgn " << LodeQDBUtil::IsDGNFile(In(folder, "g0.dgn"))
        << LodeQDBUtil::IsDGNFile(In(folder, "plan.pdf")) << '\n';
    Failure(out, [&] { LodeQDBUtil::GetPlwFileTypeByHeader(In(folder, "broken.plw")); });
    out << "text " << LodeUtil::Utf8FromUtf16(LodeQDBUtil::LoadMessageText(101)) << '\n';
}

void Everything(const std::string& folder, std::ostringstream& out) {
    Classify(folder, out);
    Walk(folder, out);
    ReadAndQuery(folder, out);
}

class DistinctDrawingsTest : public lodeqdbtest::TempFolderTest {
  protected:
    DistinctDrawingsTest() : TempFolderTest("lodeqdb-threads") {}

    void SetUp() override {
        TempFolderTest::SetUp();
        // Written by another process, so that this one meets the toolkit first on the
        // test's threads, all at once.
        const std::string root = folder;
        ASSERT_EQ(InChildProcess([&root] {
                      try {
                          for (int t = 0; t < kThreads; ++t) {
                              const std::string sub = root + "/t" + std::to_string(t);
                              if (std::system(("mkdir -p '" + sub + "'").c_str()) != 0) return 1;
                              lodeqdbtest::WriteThreadProject(sub, kDepth);
                          }
                          return 0;
                      } catch (const std::exception&) {
                          return 2;
                      }
                  }),
                  0);
    }

    // Asks `question` about each thread's folder (or all about the first, with `sameFolder`)
    // on threads of their own, all released at once, then again on this thread alone, and
    // compares.
    void AllAtOnce(const Question& question, bool sameFolder = false) {
        std::vector<std::string> answers(kThreads);
        std::atomic<int> ready{0};
        std::vector<std::thread> threads;
        for (int t = 0; t < kThreads; ++t) {
            threads.emplace_back([&, t] {
                const std::string sub = folder + "/t" + std::to_string(sameFolder ? 0 : t);
                ready.fetch_add(1);
                while (ready.load() < kThreads) std::this_thread::yield();
                std::ostringstream out;
                try {
                    for (int round = 0; round < kRounds; ++round) question(sub, out);
                } catch (const std::exception& error) {
                    out << "failed: " << lode::ExceptionClassName(error) << '\n';
                }
                answers[t] = out.str();
            });
        }
        for (std::thread& thread : threads) thread.join();
        std::ostringstream alone;
        for (int round = 0; round < kRounds; ++round) question(folder + "/t0", alone);
        ASSERT_FALSE(alone.str().empty());
        for (int t = 0; t < kThreads; ++t) EXPECT_EQ(answers[t], alone.str()) << "thread " << t;
    }
};

TEST_F(DistinctDrawingsTest, WalkingDifferentTreesAtOnce) {
    AllAtOnce(Walk);
}

TEST_F(DistinctDrawingsTest, ReadingDifferentDrawingsAtOnce) {
    AllAtOnce(ReadAndQuery);
}

TEST_F(DistinctDrawingsTest, ClassifyingDifferentDrawingsAtOnce) {
    AllAtOnce(Classify);
}

TEST_F(DistinctDrawingsTest, EverythingAtOnce) {
    AllAtOnce(Everything);
}

// The same files read into a database of each thread's own: the toolkit's file locks and
// reading are shared by the threads, the databases not.
TEST_F(DistinctDrawingsTest, TheSameFilesIntoDifferentDatabasesAtOnce) {
    AllAtOnce(Everything, true);
}

// The answers hold what the project holds: the walk goes down the whole chain and into the
// design files, the missing reference and the broken drawing are reported.
TEST_F(DistinctDrawingsTest, TheAnswersSayWhatTheProjectHolds) {
    std::ostringstream out;
    Everything(folder + "/t1", out);
    const std::string text = out.str();
    EXPECT_NE(text.find("/d6.plw 1 1"), std::string::npos) << text;
    EXPECT_NE(text.find("/missing.plw 1 4"), std::string::npos) << text;
    EXPECT_NE(text.find("/g1.dgn 4 0"), std::string::npos) << text;
    EXPECT_NE(text.find("/photo.png 2"), std::string::npos) << text;
    EXPECT_NE(text.find("/plan.pdf 7"), std::string::npos) << text;
    EXPECT_NE(text.find("InvalidFormat"), std::string::npos) << text;
    EXPECT_NE(text.find("NotFound"), std::string::npos) << text;
    EXPECT_NE(text.find("creator LodeQDB"), std::string::npos) << text;
    EXPECT_NE(text.find("dgn 10"), std::string::npos) << text;
    EXPECT_EQ(text.find("failed:"), std::string::npos) << text;
}

}  // namespace
