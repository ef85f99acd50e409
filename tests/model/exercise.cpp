// SPDX-License-Identifier: MIT
#include "exercise.hpp"

namespace model {

namespace {

/// What tells a compiler apart, see identity(): four properties, and the core's
/// name as the log of a compile shows it.
std::string identity(const std::vector<Reply>& properties, const std::string& log) {
    std::string identity;
    for (const Property property :
         {Property::core_name, Property::core_revision, Property::api_name}) {
        const std::string& quoted = properties[static_cast<std::size_t>(property)].result;
        identity += quoted.substr(1, quoted.size() - 2) + "|";
    }
    identity += properties[static_cast<std::size_t>(Property::highest_version)].result + "|";
    const std::string key = " core=";
    const std::size_t begin = log.find(key);
    if (begin == std::string::npos)
        return identity;
    const std::size_t name = begin + key.size();
    return identity + log.substr(name, log.find(' ', name) - name);
}

class Exercise {
public:
    Exercise(Dice& chance, Manager& prediction, const Other& opponent, const Judge& referee)
        : dice(chance), model(prediction), other(opponent), judge(referee) {}

    void run() {
        do {
            requests(dice.below(3));
            ask(Initialise());
            if (model.compilers() && agreed)
                compilers();
            requests(20);
            ask(Release());
        } while (agreed && dice.one_in(6));
    }

private:
    void ask(const Request& request) {
        if (!agreed)
            return;
        const Reply theirs = other(request);
        agreed = judge(request, model.answer(request), theirs);
    }

    void requests(unsigned count) {
        for (unsigned i = 0; i < count && agreed; ++i)
            ask(generate_request(dice, model));
    }

    /// Asks all there is to ask before comparing any of it: only then it is
    /// known in which order the library has the compilers of equal rank.
    void compilers() {
        ask(List_compilers());
        std::vector<Request> asked;
        std::vector<Reply> replies;
        const auto put = [&](const Request& request) {
            asked.push_back(request);
            replies.push_back(other(request));
            return replies.back();
        };
        std::vector<std::string> identities;
        const std::size_t count = agreed ? model.compilers()->entries.size() : 0;
        for (unsigned id = 0; id < count; ++id) {
            std::vector<Reply> properties(8);
            for (const Property property :
                 {Property::driver_name, Property::core_name, Property::core_revision,
                  Property::api_name, Property::highest_version, Property::binary_output,
                  Property::prerotate})
                properties[static_cast<std::size_t>(property)] = put(Ask{property, id});
            const bool opencl =
                properties[static_cast<std::size_t>(Property::api_name)].result == "\"opencl\"";
            const Reply compiled = put(plain_compile(opencl ? "opencl" : "openglessl", id));
            identities.push_back(identity(properties, compiled.log));
        }
        model.adopt_order(identities);
        for (std::size_t i = 0; i < asked.size() && agreed; ++i)
            agreed = judge(asked[i], model.answer(asked[i]), replies[i]);
    }

    Dice& dice;
    Manager& model;
    const Other& other;
    const Judge& judge;
    bool agreed = true;
};

} // namespace

void exercise(Dice& dice, Manager& model, const Other& other, const Judge& judge) {
    Exercise(dice, model, other, judge).run();
}

} // namespace model
