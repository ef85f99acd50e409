// SPDX-License-Identifier: MIT
#pragma once

#include "description.hpp"

namespace model {

/// What can be seen from outside while the library works.
struct Seen {
    std::string err; ///< standard error, the plug-ins' lines among it
    std::string log; ///< the calls of the plug-ins

    void say(const std::string& line) { err += line + "\n"; }
};

/// A compile request as a plug-in receives it.
struct Inputs {
    std::string source;
    std::vector<std::string> options;
    std::string core_name;
    std::string core_revision;
    bool binary_output;
};

/// A text as the log shows it.
std::string logged(const std::string& text);

/// Model of the steered plug-in itself: what it prints, logs and answers.
class Steered {
public:
    explicit Steered(Plugin plugin) : description(std::move(plugin)) {}

    /// Only the first opening loads it, and only the last closing unloads it.
    void open(Seen& seen);
    void close(Seen& seen);

    void note_version_call(Seen& seen) const { note(seen, "get_api_version"); }
    const Record& get_capabilities(Seen& seen);
    void release_capabilities(Seen& seen) const { note(seen, "release_capabilities"); }
    Outcome compile(const Inputs& inputs, Seen& seen) const;
    void release_outputs(Seen& seen) const { note(seen, "release_outputs"); }

    const Plugin description;

private:
    void note(Seen& seen, const std::string& call) const;

    unsigned times_open = 0;
    unsigned capability_calls = 0;
};

} // namespace model
