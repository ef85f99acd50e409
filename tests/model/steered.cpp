// SPDX-License-Identifier: MIT
#include "steered.hpp"

#include <cstdio>

namespace model {

std::string logged(const std::string& text) {
    std::string shown;
    for (const char character : text) {
        char code[4];
        std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned char>(character));
        // The plug-in's characters are signed: bytes above 127 are below the blank.
        const bool coded = static_cast<signed char>(character) <= ' ' || character == '%';
        shown += coded ? std::string(code) : std::string(1, character);
    }
    return shown;
}

void Steered::note(Seen& seen, const std::string& call) const {
    seen.log += description.api + "/" + description.file_name + " " + call + "\n";
}

void Steered::open(Seen& seen) {
    if (times_open++ > 0)
        return;
    capability_calls = 0;
    note(seen, "load");
    if (description.say_on_load)
        seen.say(*description.say_on_load);
}

void Steered::close(Seen& seen) {
    if (--times_open > 0)
        return;
    note(seen, "unload");
    if (description.say_on_unload)
        seen.say(*description.say_on_unload);
}

const Record& Steered::get_capabilities(Seen& seen) {
    note(seen, "get_capabilities");
    ++capability_calls;
    const Record* found = &description.records.front();
    for (const Record& record : description.records)
        if (record.from_call <= capability_calls)
            found = &record;
    for (const std::string& line : found->says)
        seen.say(line);
    return *found;
}

Outcome Steered::compile(const Inputs& inputs, Seen& seen) const {
    std::string call = "compile core=" + logged(inputs.core_name);
    call += " revision=" + logged(inputs.core_revision);
    call += inputs.binary_output ? " binary=1" : " binary=0";
    call += " outputs=zeroed options=" + std::to_string(inputs.options.size());
    for (const std::string& option : inputs.options)
        call += " " + logged(option);
    note(seen, call + " source=" + logged(inputs.source));

    for (const Outcome& outcome : description.outcomes) {
        if (inputs.source.find(outcome.word) == std::string::npos)
            continue;
        for (const std::string& line : outcome.says)
            seen.say(line);
        return outcome;
    }
    return {};
}

} // namespace model
