// SPDX-License-Identifier: MIT
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "loaded_library.hpp"
#include "plugin_directory.hpp"

namespace {

const std::string UNAVAILABLE =
    "Library not initialized successfully. This function is unavailable.\n";

// A record with every byte set: what a call leaves alone can be told.
template <class Record>
Record filled_record() {
    Record record;
    std::memset(&record, 0x5a, sizeof record);
    return record;
}

template <class Record>
bool is_as_filled(const Record& record) {
    const Record filled = filled_record<Record>();
    return std::memcmp(&record, &filled, sizeof record) == 0;
}

class LibraryCalls : public testing::Test {
protected:
    std::string add(const Fake_plugin& plugin, const std::string& build = "fake_plugin") {
        return plugins.add("openglessl", DRIVER_FILE, plugin, build);
    }

    std::string log(std::initializer_list<const char*> calls) const {
        return log_of("openglessl/" + DRIVER_FILE, calls);
    }

    void expect_unavailable(const Library& library) {
        auto version = filled_record<vexaoc_api_version>();
        auto capabilities = filled_record<vexaoc_capabilities>();
        auto inputs = filled_record<vexaoc_inputs>();
        auto outputs = filled_record<vexaoc_outputs>();
        EXPECT_EQ(stderr_of([&] { library.get_api_version(&version); }), UNAVAILABLE);
        EXPECT_EQ(stderr_of([&] { EXPECT_EQ(library.compile(&inputs, &outputs), 4); }),
                  UNAVAILABLE);
        EXPECT_EQ(stderr_of([&] { EXPECT_EQ(library.release_compilation_result(&outputs), 4); }),
                  UNAVAILABLE);
        EXPECT_EQ(stderr_of([&] { EXPECT_EQ(library.get_capabilities(&capabilities), 4); }),
                  UNAVAILABLE);
        EXPECT_EQ(stderr_of([&] { EXPECT_EQ(library.release_capabilities(&capabilities), 4); }),
                  UNAVAILABLE);
        EXPECT_TRUE(is_as_filled(version));
        EXPECT_TRUE(is_as_filled(capabilities));
        EXPECT_TRUE(is_as_filled(inputs));
        EXPECT_TRUE(is_as_filled(outputs));
        EXPECT_EQ(plugins.take_log(), "");
    }

    // The same file held open from outside: a call that went through would
    // neither crash nor stay unseen.
    void expect_refused_and_unavailable(const std::string& path) {
        void* const held = dlopen(path.c_str(), RTLD_NOW);
        const Loaded_library loaded(path);
        plugins.take_log();
        if (loaded.library->is_initialized())
            ADD_FAILURE() << "not refused";
        else
            expect_unavailable(*loaded.library);
        if (held)
            dlclose(held);
        plugins.take_log();
    }

    Plugin_directory plugins;
};

TEST_F(LibraryCalls, RefusedThenEveryCallSaysSoAndReachesNothing) {
    const Fake_plugin good = Fake_plugin::of_type("opencl");
    expect_refused_and_unavailable(plugins.add_file("openglessl", DRIVER_FILE, "text"));
    for (const char* function : {"get_api_version", "compile", "release_outputs",
                                 "get_capabilities", "release_capabilities"})
        expect_refused_and_unavailable(add(good, "fake_plugin_without_" + std::string(function)));
    expect_refused_and_unavailable(add(Fake_plugin(good).api_version(2, 0, 0)));
    expect_refused_and_unavailable(add(Fake_plugin(good).result(1)));
    expect_refused_and_unavailable(add(Fake_plugin(good).pair("flexible_version", "abc")));
    expect_refused_and_unavailable(add(Fake_plugin(good).pair("flexible_version", "4.0.0")));
}

TEST_F(LibraryCalls, RefusedAndGivenNothingThenTheSame) {
    const Loaded_library loaded(plugins.path("openglessl", DRIVER_FILE));
    EXPECT_EQ(stderr_of([&] { loaded.library->get_api_version(nullptr); }), UNAVAILABLE);
    EXPECT_EQ(stderr_of([&] { EXPECT_EQ(loaded.library->compile(nullptr, nullptr), 4); }),
              UNAVAILABLE);
}

TEST_F(LibraryCalls, LoadedThenEachReachesItsFunctionAndReturnsItsResult) {
    const Loaded_library loaded(add(Fake_plugin::of_type("opencl")
                                        .api_version(1, 23, 456)
                                        .core("k46x", "r0p0")
                                        .record(2)
                                        .result(-7)
                                        .outputs("broken")
                                        .result(3)
                                        .outputs("odd")
                                        .result(4711)
                                        .outputs()
                                        .a("error")
                                        .result(0)));
    const Library& library = *loaded.library;
    plugins.take_log();

    const std::string err = stderr_of([&] {
        vexaoc_api_version version = {};
        library.get_api_version(&version);
        EXPECT_EQ(version.major, 1U);
        EXPECT_EQ(version.minor, 23U);
        EXPECT_EQ(version.patch, 456U);
        EXPECT_EQ(plugins.take_log(), log({"get_api_version"}));

        auto capabilities = filled_record<vexaoc_capabilities>();
        EXPECT_EQ(library.get_capabilities(&capabilities), -7);
        EXPECT_EQ(capabilities.num_cores, 0U);
        EXPECT_EQ(plugins.take_log(), log({"get_capabilities"}));
        // The fake answers every release with 99.
        EXPECT_EQ(library.release_capabilities(&capabilities), 99);
        EXPECT_EQ(plugins.take_log(), log({"release_capabilities"}));

        const struct {
            const char* source;
            int result;
            std::uint32_t errors;
        } compiles[] = {{"broken", 3, 0}, {"odd", 4711, 0}, {"", 0, 1}};
        for (const auto& compile : compiles) {
            vexaoc_outputs outputs = {};
            vexaoc_inputs inputs = {};
            inputs.core_name = "core";
            inputs.core_revision = "revision";
            inputs.source = compile.source;
            EXPECT_EQ(library.compile(&inputs, &outputs), compile.result);
            EXPECT_EQ(outputs.num_strings_a, compile.errors);
            EXPECT_EQ(library.release_compilation_result(&outputs), 99);
            EXPECT_EQ(plugins.take_log(),
                      log({("compile core=core revision=revision binary=0 outputs=zeroed options=0 "
                            "source=" +
                            std::string(compile.source))
                               .c_str(),
                           "release_outputs"}));
        }
    });
    EXPECT_EQ(err, "");
}

TEST_F(LibraryCalls, FunctionsBoundAgainThenTrueAndTheyStillWork) {
    const Loaded_library loaded(add(Fake_plugin::of_type("opencl")));
    plugins.take_log();
    EXPECT_TRUE(loaded.library->get_library_functions());
    EXPECT_EQ(plugins.take_log(), "");
    auto capabilities = filled_record<vexaoc_capabilities>();
    EXPECT_EQ(loaded.library->release_capabilities(&capabilities), 99);
}

TEST_F(LibraryCalls, FunctionsOfARefusedPluginThenNotBound) {
    // A plug-in whose functions the whole process sees must not stand in.
    Plugin_directory others;
    const std::string visible = others.add("opencl", DRIVER_FILE, Fake_plugin::of_type("opencl"));
    void* const opened = dlopen(visible.c_str(), RTLD_NOW | RTLD_GLOBAL);
    ASSERT_NE(opened, nullptr);

    const Loaded_library unopened(plugins.add_file("openglessl", DRIVER_FILE, ""));
    EXPECT_FALSE(unopened.library->get_library_functions());
    EXPECT_FALSE(unopened.library->is_initialized());
    const Loaded_library closed(add(Fake_plugin::of_type("opencl").api_version(2, 0, 0)));
    EXPECT_FALSE(closed.library->get_library_functions());
    EXPECT_FALSE(closed.library->is_initialized());
    others.take_log();
    plugins.take_log();
    expect_unavailable(*closed.library);
    EXPECT_EQ(others.take_log(), "");
    dlclose(opened);
}

} // namespace
