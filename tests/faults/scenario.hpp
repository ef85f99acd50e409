// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "api_test.hpp"
#include "failing_calls.hpp"

/// All that a caller sees of what he does.
struct Outcome {
    std::string result; ///< what the library gave
    std::string err;    ///< what it wrote to standard error
    std::string thrown; ///< the text of the exception that left it; none: empty
};

/// Something that a caller does, over and over: each time in a process of its
/// own, in which one call fails, the first to the last, until a run passes
/// untouched.
///
/// Whatever fails, no process may crash, hang, free memory twice or leave any
/// behind; files and plug-ins must be closed, and plug-ins have their records
/// back. Then, in the same process, the library must do the same again, whole,
/// and serve another directory. Exempt, as parts of the interface, are:
///
/// - std::bad_alloc, which may leave the library: it catches nothing;
/// - the outputs of a compile, not handed back to the plug-in when their copy
///   fails, and the part that was copied, which is the caller's to release;
/// - a capability record after a failed call or without a valid flexible version,
///   see `keeps_records`.
class Scenario {
public:
    explicit Scenario(Plugin_directory& plugins);

    /// What has to work first.
    std::function<void()> before = [] {};

    /// The calls during which something fails: none but the library's.
    std::function<void()> act;

    /// What they gave, told afterwards.
    std::function<std::string()> result;

    /// Gives back what the library gave; the library itself is released too.
    std::function<void()> undo = [] {};

    /// What must be after std::bad_alloc.
    std::function<void()> after_throw = [] {};

    /// The same, where an allocation failed and nothing was thrown. When it is
    /// not set, all must be as if nothing had failed.
    std::function<void(const Outcome&)> after_coping;

    /// Whether capability records are left with the plug-in by intention.
    bool keeps_records = false;

    /// Every allocation fails in turn. Returns how many did.
    long run_out_of_memory(const Outcome& whole);

    /// Every call of that kind fails in turn, with that outcome. Returns how many
    /// did.
    long fail_each(Call call, const Outcome& whole,
                   const std::function<Outcome(long number)>& expected);

private:
    using Check = std::function<void(const Outcome&, long number)>;

    long fail_each(Call call, const Outcome& whole, const Check& check);
    int attempt(Call call, long number, const Outcome& whole, const Check& check);
    Outcome act_while_failing(Call call, long number);
    void give_all_back();
    void expect_log(bool threw);
    void expect_usable();

    Plugin_directory& plugins;
    Plugin_directory others;
};

/// Compares all three.
void expect_equal(const Outcome& outcome, const Outcome& expected);
