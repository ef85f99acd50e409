// SPDX-License-Identifier: MIT
#include "batch_test.hpp"

#include "result.hpp"

#include <sstream>

void Batch_test::on(std::string_view word, std::string_view action, std::string_view said) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("k46x", "r0p1_00rel0").core("k58x", "r0p0_00rel0").binary_output(1);
    plugin.pair("openglessl_version", "320").pair("openglessl_extensions", "GL_ONE");
    plugin.pair("prerotate", "true");
    Fake_plugin section;
    section.outputs(word);
    if (!said.empty())
        section.say(said);
    section.act(action);
    actions += section.steering();
    plugin.line(actions.substr(0, actions.size() - 1));
    plugin.outputs("BINARY").binary(std::string_view("\x00\x01\n\xff", 4));
    plugins.add_driver("openglessl", "Vexa-K300_r5p0-06rel0", plugin);
}

std::string Batch_test::brief(std::string_view text) {
    std::string brief;
    std::istringstream lines{std::string(text)};
    for (std::string json; std::getline(lines, json);) {
        const vexacm_tool::Result result = vexacm_tool::result_of_line(json);
        std::string rest = result.detail;
        if (!result.printed.empty())
            rest += " <" + result.printed + ">";
        brief += line(result.source, result.compiler.core, name(result.outcome), rest);
    }
    return brief;
}

std::string line(std::string_view source, std::string_view core, std::string_view outcome,
                 std::string_view rest) {
    std::string text(source);
    text.append(" ").append(core.substr(core.rfind('-') + 1)).append(" ").append(outcome);
    if (!rest.empty())
        text.append(" ").append(rest);
    return text + "\n";
}

std::string lines(std::string_view source, std::string_view outcome) {
    return line(source, "K580", outcome) + line(source, "K460", outcome) +
           line(source, "K420", outcome);
}
