// SPDX-License-Identifier: MIT
#include <new>

#include <gtest/gtest.h>

#include "array_allocations.hpp"
#include "captured_stderr.hpp"
#include "outputs_kit.hpp"
#include "vexacm_internal_compiler.hpp"

namespace {

using Compiler = VexaCM::Vexacm_internal_compiler;

class OutputMemory : public testing::Test {
protected:
    // Copies with that allocation failing; true when the copy was completed.
    bool copy(const vexaoc_outputs& source, long failing = -1) {
        arrays = {true, 0, 0, failing};
        Captured_stderr captured;
        bool complete = true;
        try {
            Compiler::copy_compiler_outputs(&record, &source);
        } catch (const std::bad_alloc&) {
            complete = false;
        }
        arrays.watched = false;
        err = captured.take();
        return complete;
    }

    void release() {
        arrays.watched = true;
        Compiler::release_compiler_outputs(&record);
        arrays.watched = false;
    }

    vexaoc_outputs record = {};
    std::string err;
};

// Allocations: 0 lists, 1 first list, 2 "one", 3 second list, 4 third list,
// 5 "two", 6 "three", 7 binary, 8 a, 9 "a", 10 "c", 11 b, 12 "b".
const Outputs_content CONTENT = {
    {{"one"}, {}, {"two", "three"}}, "binary", {"a", std::nullopt, "c"}, {"b"}};
constexpr long NUM_ALLOCATIONS = 13;

TEST_F(OutputMemory, CopyThenOneAllocationForEachArrayTextAndBinary) {
    const Plugin_outputs source(CONTENT);
    EXPECT_TRUE(copy(source.record));
    EXPECT_EQ(arrays.made, NUM_ALLOCATIONS);
    EXPECT_TRUE(content_of(record) == CONTENT);
    release();
    EXPECT_EQ(arrays.live, 0);
}

TEST_F(OutputMemory, NothingToCopyThenNothingIsAllocated) {
    const Plugin_outputs source({});
    EXPECT_TRUE(copy(source.record));
    EXPECT_EQ(arrays.made, 0);
    release();
    EXPECT_EQ(arrays.live, 0);
}

TEST_F(OutputMemory, ListsAloneThenAllOfItIsFreed) {
    for (const Outputs_content& content :
         {Outputs_content{{{}}, "", {}, {}}, Outputs_content{{{"x"}, {}}, "", {}, {}},
          Outputs_content{{}, "x", {}, {}}, Outputs_content{{}, "", {"x", "y"}, {}},
          Outputs_content{{}, "", {}, {"x", "y"}}}) {
        const Plugin_outputs source(content);
        record = {};
        EXPECT_TRUE(copy(source.record));
        EXPECT_GT(arrays.live, 0);
        release();
        EXPECT_EQ(arrays.live, 0);
    }
}

TEST_F(OutputMemory, ArraysBesideZeroCountsThenFreedButForTheBinary) {
    record = {};
    arrays = {true, 0, 0, -1};
    record.string_lists = new vexaoc_string_list[1];
    record.strings_a = new char*[1];
    record.strings_b = new char*[1];
    std::uint8_t* const binary = new std::uint8_t[1];
    record.binary = binary;
    release();
    EXPECT_EQ(arrays.live, 1);
    delete[] binary;
}

TEST_F(OutputMemory, AnyAllocationFailsThenThePartCopiedCanBeReleased) {
    const Plugin_outputs source(CONTENT);
    for (long failing = 0; failing < NUM_ALLOCATIONS; ++failing) {
        SCOPED_TRACE(failing);
        record = {};
        EXPECT_FALSE(copy(source.record, failing));
        EXPECT_EQ(arrays.live, failing);
        EXPECT_EQ(err, failing > 9 ? NULL_TEXT_ERROR : "");

        // A count stands only where its array does, and what the array still
        // lacks is null.
        Outputs_content expected;
        if (failing > 0)
            expected.lists.resize(3);
        if (failing > 1)
            expected.lists[0] = {failing > 2 ? Texts::value_type("one") : std::nullopt};
        if (failing > 4)
            expected.lists[2] = {failing > 5 ? Texts::value_type("two") : std::nullopt,
                                 failing > 6 ? Texts::value_type("three") : std::nullopt};
        if (failing > 7)
            expected.binary = "binary";
        if (failing > 8)
            expected.a = {failing > 9 ? Texts::value_type("a") : std::nullopt, std::nullopt,
                          failing > 10 ? Texts::value_type("c") : std::nullopt};
        if (failing > 11)
            expected.b = {std::nullopt};
        EXPECT_TRUE(content_of(record) == expected);
        EXPECT_EQ(record.string_lists != nullptr, failing > 0);
        EXPECT_EQ(record.binary != nullptr, failing > 7);
        EXPECT_EQ(record.strings_a != nullptr, failing > 8);
        EXPECT_EQ(record.strings_b != nullptr, failing > 11);
        if (failing > 0) {
            EXPECT_EQ(record.string_lists[1].strings != nullptr, failing > 3);
        }

        release();
        EXPECT_EQ(arrays.live, 0);
    }
}

TEST_F(OutputMemory, TextCopyFailsThenNothingIsWritten) {
    const char* const before = "before";
    const char* destination = before;
    arrays = {true, 0, 0, 0};
    EXPECT_THROW(Compiler::string_copy(&destination, "text"), std::bad_alloc);
    arrays.watched = false;
    EXPECT_EQ(destination, before);
}

TEST_F(OutputMemory, NullTextThenReportedWithoutAnyAllocation) {
    arrays = {true, 0, 0, 0};
    const char* destination = nullptr;
    Captured_stderr captured;
    Compiler::string_copy(&destination, nullptr);
    arrays.watched = false;
    EXPECT_EQ(captured.take(), NULL_TEXT_ERROR);
    EXPECT_EQ(arrays.made, 0);
}

} // namespace
