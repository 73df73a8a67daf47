// The project names no maker or product of drawing software: every word of every source,
// document and script is checked against a list of such names. The list holds 64-bit FNV-1a
// hashes of the lower-case names, so that the check itself names nothing.
#include <gtest/gtest.h>

#include <cctype>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

uint64_t Fnv1a(const std::string& word) {
    uint64_t hash = 0xcbf29ce484222325ull;
    for (const unsigned char c : word) {
        hash ^= c;
        hash *= 0x100000001b3ull;
    }
    return hash;
}

const std::set<uint64_t>& NamesNotToUse() {
    static const std::set<uint64_t> names = {
        0x7e027587ea493354ull, 0xd6e487ec29848e11ull, 0xa70e885aae2d5a8bull, 0x559416e9c3adef7full,
        0x9b6a853a440572aaull, 0xca5d2b18f42e5391ull, 0xca5d2a18f42e51deull, 0xca753c18f4430255ull,
        0x8c735c72d6e7e616ull, 0x284aecf2ce97800full, 0x3bf21afad5748b04ull, 0x00ae24c554e2c97cull,
        0xc1d4e83b1408f651ull, 0xaa0182a379848fc6ull, 0x0bbfa5b326bf4f7dull, 0x5e909e9ae04dd1d8ull,
    };
    return names;
}

// The words of `text`, lower case: runs of letters, split where a capital follows a small
// letter, so that "SomeName" gives "some" and "name".
std::vector<std::string> Words(const std::string& text) {
    std::vector<std::string> words;
    std::string word;
    char previous = 0;
    for (const char c : text) {
        const bool letter = std::isalpha(static_cast<unsigned char>(c)) != 0;
        const bool newWord = letter && std::isupper(static_cast<unsigned char>(c)) &&
                             std::islower(static_cast<unsigned char>(previous));
        if ((!letter || newWord) && !word.empty()) {
            words.push_back(word);
            word.clear();
        }
        if (letter) word += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        previous = c;
    }
    if (!word.empty()) words.push_back(word);
    return words;
}

bool Skipped(const fs::path& path) {
    const std::string name = path.filename().string();
    return name.starts_with(".") || name.starts_with("build");
}

TEST(ProductNames, WordsAreSplitAtCapitalsAndNonLetters) {
    EXPECT_EQ(Words("PwDbTable x_y, Zz9a"),
              (std::vector<std::string>{"pw", "db", "table", "x", "y", "zz", "a"}));
}

TEST(ProductNames, NoFileOfTheProjectNamesAMakerOrProduct) {
    const fs::path root = LODEQDB_SOURCE_DIR;
    ASSERT_TRUE(fs::exists(root / "CMakeLists.txt"));
    size_t files = 0;
    for (auto entry = fs::recursive_directory_iterator(root);
         entry != fs::recursive_directory_iterator(); ++entry) {
        if (Skipped(entry->path())) {
            if (entry->is_directory()) entry.disable_recursion_pending();
            continue;
        }
        if (!entry->is_regular_file()) continue;
        std::ifstream in(entry->path(), std::ios::binary);
        std::stringstream all;
        all << in.rdbuf();
        const std::string text = all.str();
        if (text.find('\0') != std::string::npos) continue;  // not text
        ++files;
        for (const std::string& word : Words(entry->path().filename().string() + " " + text)) {
            EXPECT_EQ(NamesNotToUse().count(Fnv1a(word)), 0u)
                << entry->path() << " holds the name of a maker or product: \"" << word << '"';
        }
    }
    EXPECT_GT(files, 100u);
}

}  // namespace
