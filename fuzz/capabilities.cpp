// SPDX-License-Identifier: MIT
//
// Capability records: the input is the script of a plug-in's records (see
// script.hpp). Behind it comes an older plug-in that nothing is wrong with.
#include <string_view>

#include "comparison.hpp"
#include "script.hpp"
#include "target.hpp"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Plugin_directory files;
    const std::string input(data, data + size);

    model::Directory directory;
    model::Plugin scripted = plugin("openglessl", "Vexa-K300_r5p0-06rel0");
    scripted.records = {model::Record()};
    Script(input).steer(scripted);
    directory.plugins = {scripted, plugin("opencl", "Vexa-K300_r4p0-00rel0")};

    Comparison both(directory, files);
    both.ask(model::Initialise());
    both.ask(model::List_compilers());
    for (unsigned id = 0; id < both.compilers(); ++id)
        for (const model::Property property :
             {model::Property::driver_name, model::Property::core_name,
              model::Property::core_revision, model::Property::api_name,
              model::Property::highest_version, model::Property::binary_output,
              model::Property::prerotate})
            both.ask(model::Ask{property, id});
    if (both.compilers() > 0) // asking all of them would be compiling by the dozen
        both.ask(model::Ask{model::Property::extensions, 0});
    both.ask(model::Release());
    return 0;
}
