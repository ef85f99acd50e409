// SPDX-License-Identifier: MIT
#include <cstdint>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "captured_stderr.hpp"
#include "outputs_kit.hpp"
#include "vexacm_internal_compiler.hpp"

namespace {

using Compiler = VexaCM::Vexacm_internal_compiler;

// A copy, released at its end.
struct Copy {
    explicit Copy(const vexaoc_outputs& source) {
        std::memset(&record, 0, sizeof record); // the padding as well
        err = stderr_of([&] { Compiler::copy_compiler_outputs(&record, &source); });
    }
    ~Copy() { Compiler::release_compiler_outputs(&record); }
    Copy(const Copy&) = delete;
    Copy& operator=(const Copy&) = delete;

    vexaoc_outputs record;
    std::string err;
};

bool is_all_zero(const vexaoc_outputs& record) {
    static const char zeros[sizeof record] = {};
    return std::memcmp(&record, zeros, sizeof record) == 0;
}

TEST(StringCopy, TextThenAnArrayOfItsOwn) {
    for (const std::string& text : {std::string(), std::string("a"), std::string("two words\n\x80"),
                                    std::string(1000000, 'x')}) {
        const char* copy = nullptr;
        EXPECT_EQ(stderr_of([&] { Compiler::string_copy(&copy, text.c_str()); }), "");
        ASSERT_NE(copy, nullptr);
        EXPECT_NE(copy, text.c_str());
        EXPECT_EQ(copy, text);
        delete[] copy;
    }
}

TEST(StringCopy, DestinationHoldsSomethingThenItIsReplaced) {
    const char* const before = "before";
    const char* copy = before;
    Compiler::string_copy(&copy, "after");
    EXPECT_STREQ(copy, "after");
    EXPECT_STREQ(before, "before");
    delete[] copy;
}

TEST(StringCopy, NothingGivenThenReportedAndNothingIsWritten) {
    const char* const before = "before";
    const char* copy = before;
    EXPECT_EQ(stderr_of([&] { Compiler::string_copy(&copy, nullptr); }), NULL_TEXT_ERROR);
    EXPECT_EQ(copy, before);
    EXPECT_EQ(stderr_of([] { Compiler::string_copy(nullptr, "text"); }), NULL_TEXT_ERROR);
    EXPECT_EQ(stderr_of([] { Compiler::string_copy(nullptr, nullptr); }), NULL_TEXT_ERROR);
}

TEST(OutputCopy, NothingThenAllZero) {
    const Copy copy(Plugin_outputs({}).record);
    EXPECT_TRUE(is_all_zero(copy.record));
    EXPECT_EQ(copy.err, "");
}

TEST(OutputCopy, AnyCombinationThenTheSameContent) {
    const std::vector<std::vector<Texts>> lists = {
        {}, {{}}, {{"one"}, {"two", "three"}}, {{}, {""}, {}, {"a", "", "b"}}};
    const std::vector<std::string> binaries = {"", "x", std::string("\0\xff\0", 3),
                                               std::string(100000, '\xee')};
    const std::vector<Texts> texts = {{}, {""}, {"error"}, {"1", "two\n", std::string(5000, '3')}};
    for (const auto& some_lists : lists)
        for (const auto& binary : binaries)
            for (const auto& a : texts)
                for (const auto& b : texts) {
                    const Outputs_content content = {some_lists, binary, a, b};
                    const Plugin_outputs source(content);
                    const Copy copy(source.record);
                    EXPECT_TRUE(content_of(copy.record) == content);
                    EXPECT_TRUE(content_of(source.record) == content);
                    EXPECT_EQ(copy.err, "");
                    // Where there is nothing there is no array.
                    EXPECT_EQ(copy.record.string_lists == nullptr, some_lists.empty());
                    EXPECT_EQ(copy.record.binary == nullptr, binary.empty());
                    EXPECT_EQ(copy.record.strings_a == nullptr, a.empty());
                    EXPECT_EQ(copy.record.strings_b == nullptr, b.empty());
                }
}

TEST(OutputCopy, EveryPointerIsItsOwn) {
    const Outputs_content content = {{{"one"}, {"two", "three"}}, "binary", {"a"}, {"b", "b"}};
    const Plugin_outputs source(content);
    const Copy copy(source.record);

    std::set<const void*> pointers;
    std::size_t count = 0;
    const auto add = [&](const void* pointer) {
        pointers.insert(pointer);
        ++count;
    };
    const auto add_list = [&](std::uint32_t length, char** strings) {
        add(strings);
        for (std::uint32_t i = 0; i < length; ++i)
            add(strings[i]);
    };
    for (const vexaoc_outputs* record : {&source.record, &copy.record}) {
        add(record->string_lists);
        for (std::uint32_t i = 0; i < record->num_string_lists; ++i)
            add_list(record->string_lists[i].num_strings, record->string_lists[i].strings);
        add(record->binary);
        add_list(record->num_strings_a, record->strings_a);
        add_list(record->num_strings_b, record->strings_b);
    }
    EXPECT_EQ(pointers.size(), count);
    EXPECT_EQ(pointers.count(nullptr), 0U);
}

TEST(OutputCopy, SourceIsGoneThenTheCopyStands) {
    const Outputs_content content = {{{"one"}, {"two", "three"}}, "binary", {"a"}, {"b"}};
    auto source = std::make_unique<Plugin_outputs>(content);
    const Copy copy(source->record);
    source.reset();
    EXPECT_TRUE(content_of(copy.record) == content);
}

TEST(OutputCopy, CopyIsReleasedThenTheSourceStands) {
    const Outputs_content content = {{{"one"}, {"two", "three"}}, "binary", {"a"}, {}};
    const Plugin_outputs source(content);
    vexaoc_outputs before;
    std::memcpy(&before, &source.record, sizeof before);
    { const Copy copy(source.record); }
    EXPECT_EQ(std::memcmp(&before, &source.record, sizeof before), 0);
    EXPECT_TRUE(content_of(source.record) == content);
}

TEST(OutputCopy, ListWithoutTextsThenAnArrayOfNone) {
    const Plugin_outputs source({{{}, {"x"}}, "", {}, {}});
    const Copy copy(source.record);
    ASSERT_EQ(copy.record.num_string_lists, 2U);
    EXPECT_EQ(copy.record.string_lists[0].num_strings, 0U);
    EXPECT_NE(copy.record.string_lists[0].strings, nullptr);
    EXPECT_STREQ(copy.record.string_lists[1].strings[0], "x");
}

TEST(OutputCopy, ArraysBesideZeroCountsThenIgnored) {
    Plugin_outputs source({{{"one"}}, "binary", {"a"}, {"b"}});
    source.record.num_string_lists = 0;
    source.record.binary_size = 0;
    source.record.num_strings_a = 0;
    source.record.num_strings_b = 0;
    const Copy copy(source.record);
    EXPECT_TRUE(is_all_zero(copy.record));
    EXPECT_EQ(copy.err, "");

    // What the caller's record held there is not touched either.
    vexaoc_outputs record;
    std::memset(&record, 0x5a, sizeof record);
    vexaoc_outputs untouched;
    std::memcpy(&untouched, &record, sizeof record);
    Compiler::copy_compiler_outputs(&record, &source.record);
    EXPECT_EQ(record.string_lists, untouched.string_lists);
    EXPECT_EQ(record.binary, untouched.binary);
    EXPECT_EQ(record.strings_a, untouched.strings_a);
    EXPECT_EQ(record.strings_b, untouched.strings_b);
}

TEST(OutputCopy, NullArraysBesideCountsThenTheyReadAsEmpty) {
    const Outputs_content content = {{{"one"}, {"two"}}, "binary", {"a"}, {"b"}};
    Plugin_outputs source(content);
    source.record.string_lists = nullptr;
    source.record.binary = nullptr;
    source.record.strings_a = nullptr;
    source.record.strings_b = nullptr;
    const Copy copy(source.record);
    EXPECT_TRUE(is_all_zero(copy.record));
    EXPECT_EQ(copy.err, "");

    // Each on its own, beside the others.
    for (int field = 0; field < 5; ++field) {
        Plugin_outputs one_null(content);
        Outputs_content expected = content;
        switch (field) {
        case 0:
            one_null.record.string_lists = nullptr;
            expected.lists.clear();
            break;
        case 1:
            one_null.record.string_lists[0].strings = nullptr;
            expected.lists[0].clear();
            break;
        case 2:
            one_null.record.binary = nullptr;
            expected.binary.clear();
            break;
        case 3:
            one_null.record.strings_a = nullptr;
            expected.a.clear();
            break;
        default:
            one_null.record.strings_b = nullptr;
            expected.b.clear();
        }
        const Copy copy_of_rest(one_null.record);
        EXPECT_TRUE(content_of(copy_of_rest.record) == expected) << field;
        EXPECT_EQ(copy_of_rest.err, "");
    }
}

TEST(OutputCopy, NullTextsThenOneLineForEachAndTheRestIsCopied) {
    const struct {
        Outputs_content content;
        int nulls;
    } cases[] = {
        {{{}, "", {std::nullopt}, {}}, 1},
        {{{}, "", {}, {std::nullopt}}, 1},
        {{{{std::nullopt}}, "", {}, {}}, 1},
        {{{}, "", {"a", std::nullopt, "c"}, {std::nullopt, "b"}}, 2},
        {{{{std::nullopt, "x"}, {}, {"y", std::nullopt, std::nullopt, "z"}},
          "binary",
          {std::nullopt, std::nullopt},
          {"b", std::nullopt}},
         6},
    };
    for (const auto& expected : cases) {
        const Plugin_outputs source(expected.content);
        const Copy copy(source.record);
        EXPECT_TRUE(content_of(copy.record) == expected.content);
        std::string err;
        for (int i = 0; i < expected.nulls; ++i)
            err += NULL_TEXT_ERROR;
        EXPECT_EQ(copy.err, err);
    }
}

TEST(OutputRelease, LeavesTheRecordAsItWas) {
    const Plugin_outputs source({{{"one"}, {}}, "binary", {"a", std::nullopt}, {"b"}});
    vexaoc_outputs record = {};
    stderr_of([&] { Compiler::copy_compiler_outputs(&record, &source.record); });
    vexaoc_outputs before;
    std::memcpy(&before, &record, sizeof before);
    EXPECT_EQ(stderr_of([&] { Compiler::release_compiler_outputs(&record); }), "");
    EXPECT_EQ(std::memcmp(&before, &record, sizeof before), 0);
    EXPECT_EQ(record.num_string_lists, 2U);
    EXPECT_EQ(record.num_strings_a, 2U);
    EXPECT_NE(record.strings_b, nullptr);
}

TEST(OutputRelease, NothingThenNothingIsFreed) {
    vexaoc_outputs record;
    std::memset(&record, 0, sizeof record);
    EXPECT_EQ(stderr_of([&] { Compiler::release_compiler_outputs(&record); }), "");
    EXPECT_TRUE(is_all_zero(record));
}

TEST(OutputRelease, CountsBesideNullArraysThenNothingIsFreed) {
    vexaoc_outputs record = {};
    record.num_string_lists = record.binary_size = 3;
    record.num_strings_a = record.num_strings_b = 3;
    EXPECT_EQ(stderr_of([&] { Compiler::release_compiler_outputs(&record); }), "");

    record.num_string_lists = 1;
    record.string_lists = new vexaoc_string_list[1]();
    record.string_lists[0].num_strings = 3;
    EXPECT_EQ(stderr_of([&] { Compiler::release_compiler_outputs(&record); }), "");
}

TEST(OutputRelease, BinaryOfNoBytesThenItIsNotTheManagersToFree) {
    std::uint8_t bytes[] = {1, 2, 3};
    vexaoc_outputs record = {};
    record.binary = bytes;
    Compiler::release_compiler_outputs(&record);
    EXPECT_EQ(record.binary, bytes);
    EXPECT_EQ(bytes[2], 3);
}

} // namespace
