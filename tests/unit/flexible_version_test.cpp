// SPDX-License-Identifier: MIT
#include "library_load_test.hpp"

#include "grouping_locale.hpp"

namespace {

const char* const UPGRADE_FLEXIBLE =
    "This compiler manager supports flexible versions v1.x.x, v2.x.x and v3.x.x only. Please "
    "upgrade to a later compiler manager version.\n";

/// The rest of the loading tests has a file of its own.
class FlexibleVersion : public LibraryLoad {
protected:
    std::string malformed(const std::string& value) const {
        return "Invalid or malformed flexible version specified for library " + path +
               ".\nVersion specified: " + value + "\n";
    }

    std::string unsupported(const std::string& version) const {
        return "Library at " + path + " uses flexible version " + version + ".\n" +
               UPGRADE_FLEXIBLE;
    }

    // Whatever comes of it, the record is handed back, once.
    void expect(const Fake_plugin& plugin, const std::string& err) {
        add(plugin);
        if (err.empty())
            expect_loaded();
        else
            expect_refused(err, {"load", "get_api_version", "get_capabilities",
                                 "release_capabilities", "unload"});
    }

    void expect_value(const char* value, const std::string& err) {
        SCOPED_TRACE(value ? value : "(null)");
        expect(Fake_plugin().record().pair("flexible_version", value), err);
    }
};

TEST_F(FlexibleVersion, MajorFromOneToThreeThenItLoads) {
    for (const char* value : {"1.0.0", "2.0.0", "3.0.0", "3.9.9", "1.4294967295.4294967295",
                              "03.0.0", "1.2.3.4", "1.2.3beta", "+1.+2.+3", " 1. 2.\n3", "1.2.3 "})
        expect_value(value, "");
}

TEST_F(FlexibleVersion, MajorOfMoreThan32BitsThenTheLowestCount) {
    expect_value("4294967297.0.0", "");
    expect_value("9223372036854775809.0.0", "");
    expect_value("18446744073709551617.0.0", unsupported("4294967295.0.0"));
}

TEST_F(FlexibleVersion, OtherMajorThenRefused) {
    expect_value("0.0.0", unsupported("0.0.0"));
    expect_value("0.1.0", unsupported("0.1.0"));
    expect_value("4.0.0", unsupported("4.0.0"));
    expect_value("04.05.06", unsupported("4.5.6"));
    expect_value("257.0.0", unsupported("257.0.0"));
    expect_value("4294967295.1000.1000000", unsupported("4294967295.1000.1000000"));
    // Numbers without a sign: below nothing comes the greatest.
    expect_value("-1.0.0", unsupported("4294967295.0.0"));
}

TEST_F(FlexibleVersion, MalformedThenRefusedWithTheValue) {
    for (const char* value :
         {"1", "1.", "1.2", "1.2.", "2.x.3", "3.2.x", "1,2,3", "1 .2.3", "1..2", "3-2-1"})
        expect_value(value, malformed(value));
}

TEST_F(FlexibleVersion, MajorMissingThenReportedTwice) {
    for (const char* value : {"abc", "", " ", ".1.2", "v1.2.3", "%u.%u.%u", "\x80\xff"})
        expect_value(value, malformed(value) + unsupported("0.0.0"));
}

TEST_F(FlexibleVersion, MalformedBehindAMajorOutOfRangeThenReportedTwice) {
    expect_value("0", malformed("0") + unsupported("0.0.0"));
    expect_value("0.5", malformed("0.5") + unsupported("0.5.0"));
    expect_value("0x1.0.0", malformed("0x1.0.0") + unsupported("0.0.0"));
    expect_value("4", malformed("4") + unsupported("4.0.0"));
    expect_value("5.6.", malformed("5.6.") + unsupported("5.6.0"));
}

TEST_F(FlexibleVersion, NullThenItReadsAsEmpty) {
    expect_value(nullptr, malformed("") + unsupported("0.0.0"));
}

TEST_F(FlexibleVersion, LongThenTheWholeOfItIsTold) {
    const std::string value(10000, 'x');
    expect_value(value.c_str(), malformed(value) + unsupported("0.0.0"));
}

TEST_F(FlexibleVersion, LocaleThatGroupsDigitsThenTheSameMessages) {
    const Grouping_locale grouping;
    expect_value("1000.2000.3000", unsupported("1000.2000.3000"));
    expect_value("1,000.0.0", malformed("1,000.0.0"));
    expect_value("1.2.3", "");
}

TEST_F(FlexibleVersion, SeveralThenEachIsExamined) {
    const auto values = [](std::initializer_list<const char*> list) {
        Fake_plugin plugin = Fake_plugin().record();
        for (const char* value : list)
            plugin.pair("architecture", "flexible_version").pair("flexible_version", value);
        return plugin;
    };
    expect(values({"1.0.0", "2.0.0", "3.0.0"}), "");
    expect(values({"1.0.0", "4.0.0"}), unsupported("4.0.0"));
    expect(values({"1.2", "1.0.0"}), malformed("1.2"));
    // Nothing read from one value is left over for the next.
    expect(values({"3.2.1", "abc", "0.1.0", "9.8", "x", "2.0.0"}),
           malformed("abc") + unsupported("0.0.0") + unsupported("0.1.0") + malformed("9.8") +
               unsupported("9.8.0") + malformed("x") + unsupported("0.0.0"));
}

TEST_F(FlexibleVersion, NoneThenItLoads) {
    expect(Fake_plugin().record(), "");
    expect(Fake_plugin().record().pair("compiler_type", "opencl"), "");
    for (const char* key : {"", "flexible", "flexible_version ", "Flexible_version",
                            "flexible_versions", " flexible_version"})
        expect(Fake_plugin().record().pair(key, "abc"), "");
    expect(Fake_plugin().record().pair(nullptr, "abc"), "");
    // A value is no key.
    expect(Fake_plugin().record().pair("architecture", "flexible_version").pair("abc", "abc"), "");
}

TEST_F(FlexibleVersion, KeyWithoutAValueAtTheEndThenItIsIgnored) {
    expect(Fake_plugin().record().text("flexible_version"), "");
    expect(Fake_plugin().record().pair("flexible_version", "2.0.0").text("flexible_version"), "");
    expect(Fake_plugin().record().pair("flexible_version", "2").text("flexible_version"),
           malformed("2"));
    expect(Fake_plugin().record().pair("flexible_version", "abc").num_entries(1), "");
}

TEST_F(FlexibleVersion, CountBesideANullListThenItReadsAsEmpty) {
    expect(Fake_plugin().record().pair("flexible_version", "abc").null_entries(), "");
    expect(Fake_plugin().record().null_entries().num_entries(4294967295), "");
    expect(Fake_plugin().record().pair("flexible_version", "abc").num_entries(0), "");
    expect(Fake_plugin().record().null_cores().num_cores(3), "");
}

} // namespace
