// A test fixture that owns a fresh folder under /tmp for the files a test makes, removes it
// afterwards, and runs code in a child process for tests of locks between processes.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/lodeutil/WideString.h>
#include "toolkit/pal/PwFileSystemCalls.h"

namespace lodeqdbtest {

class TempFolderTest : public testing::Test {
  protected:
    /// `prefix` names the folder: /tmp/<prefix>-XXXXXX.
    explicit TempFolderTest(std::string prefix) : prefix_(std::move(prefix)) {}

    void SetUp() override {
        std::string pattern = "/tmp/" + prefix_ + "-XXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder = pattern;
    }
    void TearDown() override {
        pwReplaceFileSystemCallsForTesting({});
        if (!folder.empty()) std::system(("rm -rf '" + folder + "'").c_str());
    }

    /// The full name of `name` inside the folder.
    wstring Path(const std::string& name) const {
        return LodeUtil::Utf16FromUtf8(folder + "/" + name);
    }
    void Write(const std::string& name, const std::string& content) const {
        std::ofstream(folder + "/" + name, std::ios::binary) << content;
    }
    /// The bytes of `name` inside the folder; empty when it cannot be read.
    std::string Read(const std::string& name) const {
        std::ifstream in(folder + "/" + name, std::ios::binary);
        std::stringstream all;
        all << in.rdbuf();
        return all.str();
    }
    /// Runs `body` in a child process and gives its exit code.
    template <class Body>
    static int InChildProcess(Body body) {
        const pid_t child = fork();
        if (child == 0) _exit(body());
        int status = 0;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::string folder;

  private:
    std::string prefix_;
};

}  // namespace lodeqdbtest
