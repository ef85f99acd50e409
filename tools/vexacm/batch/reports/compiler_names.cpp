// SPDX-License-Identifier: MIT
#include "compiler_names.hpp"

#include "text.hpp"

#include <algorithm>
#include <iterator>
#include <set>

namespace vexacm_tool {

std::string wrapped_list(const std::string& start, const std::vector<std::string>& items,
                         std::size_t indentation) {
    constexpr std::size_t COLUMNS = 80;
    std::string text;
    std::string line = start;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const std::string item = terminal_line(items[i]) + (i + 1 < items.size() ? "," : "");
        if (i > 0 && line.size() + 1 + item.size() > COLUMNS) {
            text += line + '\n';
            line.assign(indentation, ' ');
        } else if (i > 0) {
            line += ' ';
        }
        line += item;
    }
    return text + line + '\n';
}

Compiler_names::Compiler_names(const Matrix& matrix, Numbers all)
    : matrix_(matrix), all_(std::move(all)) {}

std::string Compiler_names::text(const std::string& start, const Numbers& some) const {
    if (some == all_ && all_.size() > 1)
        return start + "all " + std::to_string(all_.size()) + " compilers\n";
    std::string text;
    std::set<std::string> named;
    for (const std::size_t compiler : some) {
        const std::string name = driver(compiler);
        if (!named.insert(name).second)
            continue;
        const Numbers here = of_driver(some, name);
        const std::string first =
            (text.empty() ? start : std::string(start.size(), ' ')) + terminal_line(name) + ": ";
        if (here.size() > 1 && here == of_driver(all_, name)) {
            text += first + "all " + std::to_string(here.size()) + '\n';
            continue;
        }
        std::vector<std::string> cores;
        std::transform(here.begin(), here.end(), std::back_inserter(cores),
                       [this](std::size_t one) { return core(one); });
        text += wrapped_list(first, cores, start.size() + 2);
    }
    return text;
}

std::string Compiler_names::driver(std::size_t compiler) const {
    const Compiler_name& name = matrix_.compilers()[compiler];
    return name.driver + ' ' + name.api;
}

std::string Compiler_names::core(std::size_t compiler) const {
    const Compiler_name& name = matrix_.compilers()[compiler];
    return name.core + ' ' + name.revision;
}

Compiler_names::Numbers Compiler_names::of_driver(const Numbers& some,
                                                  const std::string& driver_name) const {
    Numbers found;
    std::copy_if(some.begin(), some.end(), std::back_inserter(found),
                 [&](std::size_t compiler) { return driver(compiler) == driver_name; });
    return found;
}

} // namespace vexacm_tool
