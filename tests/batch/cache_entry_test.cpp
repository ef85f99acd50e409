// SPDX-License-Identifier: MIT
// Entries that are not what was written. Each is compiled again and replaced.
#include "cache_test.hpp"

#include "../cache/entry.hpp"

#include <filesystem>
#include <fstream>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using vexacm_tool::Compiled;
using vexacm_tool::Entry;
using vexacm_tool::read_entry;

/// A file with an entry in it, which is read under this key.
class CacheEntry : public Cache_test {
protected:
    CacheEntry() {
        compiled.has_errors = true;
        compiled.errors = {"an error", ""};
        compiled.warnings = {"a warning"};
        compiled.tables = {{"a", "b"}, {}, {"c"}};
        compiled.binary_size = 4;
        compiled.binary = std::string("\x00\x01\n\xff", 4);
        compiled.printed = "printed";
        const int out = ::open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        EXPECT_EQ(Entry(key, compiled).write_to(out), 0);
        ::close(out);
    }

    bool is_read() const { return read_entry(file, key, 1).has_value(); }

    const std::string key = "0123456789abcdef0123456789abcdef";
    const std::string file = path("entry");
    Compiled compiled;
};

TEST_F(CacheEntry, WrittenThenRead) {
    const auto found = read_entry(file, key, 1);
    ASSERT_TRUE(found);
    EXPECT_TRUE(found->has_errors);
    EXPECT_EQ(found->errors, compiled.errors);
    EXPECT_EQ(found->warnings, compiled.warnings);
    EXPECT_EQ(found->tables, compiled.tables);
    EXPECT_EQ(found->binary_size, 4U);
    EXPECT_EQ(found->binary, compiled.binary);
    EXPECT_EQ(found->printed, "printed");
    EXPECT_EQ(Entry(key, compiled).blocks(), 1U);
}

TEST_F(CacheEntry, EveryByteFlippedThenNotRead) {
    const std::string whole = read_file(file);
    for (std::size_t at = 0; at < whole.size(); ++at) {
        std::string flipped = whole;
        flipped[at] = static_cast<char>(flipped[at] ^ 1 << at % 8);
        write_file(file, flipped);
        EXPECT_FALSE(is_read()) << at;
    }
    write_file(file, whole);
    EXPECT_TRUE(is_read());
}

TEST_F(CacheEntry, EveryLengthButItsOwnThenNotRead) {
    const std::string whole = read_file(file);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        write_file(file, whole.substr(0, length));
        EXPECT_FALSE(is_read()) << length;
    }
    write_file(file, whole + '\0');
    EXPECT_FALSE(is_read());
}

// The lengths stand behind the magic number, the digest and the key.
TEST_F(CacheEntry, LengthsThatAreTooGreatThenNothingIsMadeOfThem) {
    const std::string whole = read_file(file);
    for (const std::size_t at : {std::size_t{72}, std::size_t{80}})
        for (const std::uint64_t length : {~std::uint64_t{0}, std::uint64_t{1} << 40}) {
            std::string huge = whole;
            huge.replace(at, sizeof length, reinterpret_cast<const char*>(&length), sizeof length);
            write_file(file, huge);
            EXPECT_FALSE(is_read());
        }
}

TEST_F(CacheEntry, LengthsThatAreTheFilesTogetherByOverflowThenNothingIsMadeOfThem) {
    std::string huge = read_file(file);
    const std::uint64_t texts = std::uint64_t{1} << 60;
    const std::uint64_t binary = huge.size() - 88 - texts;
    huge.replace(72, sizeof texts, reinterpret_cast<const char*>(&texts), sizeof texts);
    huge.replace(80, sizeof binary, reinterpret_cast<const char*>(&binary), sizeof binary);
    write_file(file, huge);
    EXPECT_FALSE(is_read());
}

TEST_F(CacheEntry, SparseFileOfAnySizeThenNotRead) {
    ASSERT_EQ(::truncate(file.c_str(), off_t{1} << 40), 0);
    EXPECT_FALSE(read_entry(file, key, 262144));
}

TEST_F(CacheEntry, AnotherKeyThenNotRead) {
    EXPECT_FALSE(read_entry(file, "1123456789abcdef0123456789abcdef", 1));
}

TEST_F(CacheEntry, TooManyBlocksThenNotRead) {
    EXPECT_FALSE(read_entry(file, key, 0));
}

TEST_F(CacheEntry, NoRegularFileThenNotRead) {
    fs::create_symlink(file, path("link"));
    fs::create_directory(path("directory"));
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    for (const std::string name : {"link", "directory", "pipe", "missing", "entry/entry"})
        EXPECT_FALSE(read_entry(path(name), key, 1)) << name;
    EXPECT_FALSE(read_entry("/dev/zero", key, 1));
}

/// A run with its entry, which is then spoiled.
class CacheEntrySpoiled : public Cache_test {
protected:
    CacheEntrySpoiled() {
        add_source("a.frag", "WARN");
        add_source("b.frag", "ERROR");
        expected = run();
        cached({"b.frag", "--core", "Vexa-K580"});
        other = entries().at(0);
        expect_same(cached(arguments), expected);
        for (const std::string& found : entries())
            if (found != other)
                entry = found;
        whole = read_file(entry);
        take_requests();
    }

    Process_result run() const { return ordered(arguments); }

    void expect_replaced() {
        expect_same(cached(arguments), expected);
        EXPECT_NE(take_requests(), "");
        EXPECT_EQ(read_file(entry), whole);
        expect_same(cached(arguments), expected);
        EXPECT_EQ(take_requests(), "");
    }

    const std::vector<std::string> arguments{"a.frag", "--core", "Vexa-K580"};
    Process_result expected;
    std::string entry;
    std::string other;
    std::string whole;
};

TEST_F(CacheEntrySpoiled, PoisonedThenReplaced) {
    for (const std::string& text :
         {std::string(), whole.substr(0, whole.size() / 2), whole + whole, std::string(5000, 'x'),
          read_file(other), std::string(whole.size(), '\0')}) {
        write_file(entry, text);
        expect_replaced();
    }
}

TEST_F(CacheEntrySpoiled, PipeOrLinkInItsPlaceThenReplaced) {
    fs::remove(entry);
    ASSERT_EQ(::mkfifo(entry.c_str(), 0600), 0);
    expect_replaced();
    fs::remove(entry);
    fs::create_symlink(other, entry);
    expect_replaced();
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(entry)));
}

TEST_F(CacheEntrySpoiled, DirectoryInItsPlaceThenToldAndCompiled) {
    fs::remove(entry);
    fs::create_directory(entry);
    const auto result = cached(arguments);
    expect(result, expected.status, expected.out,
           "vexacm: the cache in 'cache' takes no entries: Is a directory\n");
    EXPECT_EQ(unfinished(), std::vector<std::string>{});
}

} // namespace
