// SPDX-License-Identifier: MIT
#include "names.hpp"

#include <map>
#include <sstream>
#include <stdexcept>
#include <tuple>

#include "standard_stoi.hpp"

namespace model {

namespace {

const auto npos = std::string::npos;

std::string driver_name(std::string path) {
    const std::size_t slash = path.rfind('/');
    if (slash != npos && slash + 1 != path.size())
        path = path.substr(slash + 1);
    const std::size_t letter = path.find_last_of(".so");
    if (letter != npos && letter >= 2)
        path = path.substr(0, letter - 2);
    const std::size_t lib = path.find("lib");
    if (lib != npos)
        path = path.substr(lib + 3);
    return path;
}

/// The position of a delimiter, which must be there.
std::size_t find(const std::string& name, const std::string& delimiter, const std::string& what,
                 std::size_t from) {
    const std::size_t found = name.find(delimiter, from);
    if (found == npos)
        throw std::runtime_error("Could not find " + what + " delimiter \"" + delimiter + "\"");
    return found;
}

void read_numbers(const std::string& name, Driver& driver) {
    if (name.substr(0, 5) != "Vexa-")
        throw std::runtime_error("Name does not begin with \"Vexa-\"");
    const std::size_t r = find(name, "_r", "revision", 5);
    const std::string core = name.substr(5, r - 5);
    if (core != "200" && core != "K300")
        throw std::runtime_error("Unknown core name");
    driver.core = core == "200" ? 0 : 1;

    // Each number is cut as long as its delimiter's position in the whole name,
    // hence past the delimiter.
    const std::size_t p = find(name, "p", "patch", r + 2);
    driver.revision = standard_stoi(name.substr(r + 2, p));
    const std::size_t hyphen = find(name, "-", "version", p + 1);
    driver.patch = standard_stoi(name.substr(p + 1, hyphen));
    const std::size_t rel = find(name, "rel", "release", hyphen + 1);
    driver.version = standard_stoi(name.substr(hyphen + 1, rel));
    driver.release = standard_stoi(name.substr(rel + 3));
}

/// Digits after white space; the number stays as it is where there is nothing
/// else, and is 0 where something else than a digit comes first.
void read_number(const std::string& text, std::uint32_t& number) {
    const std::size_t begin = text.find_first_not_of(" \t\n\v\f\r");
    if (begin == npos)
        return;
    number = 0;
    for (std::size_t i = begin; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i)
        number = number * 10 + static_cast<std::uint32_t>(text[i] - '0');
}

/// What is left after a delimiter, or after that many characters.
std::string skip(const std::string& text, char delimiter, std::size_t most) {
    std::size_t position = 0;
    while (position < text.size() && position < most)
        if (text[position++] == delimiter)
            break;
    return text.substr(position);
}

/// Takes characters up to a delimiter, or that many.
std::string take(std::istream& stream, char delimiter, int most) {
    char taken[8] = "";
    stream.getline(taken, most + 1, delimiter);
    return taken;
}

void read_core(const std::string& display_name, std::uint32_t& number) {
    std::istringstream stream(skip(display_name, '-', 5));
    if (stream.peek() == 'K')
        stream.get();
    read_number(take(stream, '\n', 3), number);
}

void read_revision(const std::string& revision, Rank& rank) {
    std::istringstream stream(skip(revision, 'r', 2));
    read_number(take(stream, 'p', 1), rank[1]);
    read_number(take(stream, '_', 1), rank[2]);
    if (stream.eof())
        return;
    const std::string rest = take(stream, '\n', 6);
    read_number(rest.substr(0, rest.find_first_of("dr")), rank[3]);
    const std::size_t tag_end = rest.find_first_of("vl");
    read_number(rest.substr(tag_end == npos ? 0 : tag_end + 1, 1), rank[4]);
}

} // namespace

Driver read_driver(const std::string& path) {
    Driver driver;
    driver.name = driver_name(path);
    try {
        read_numbers(driver.name, driver);
    } catch (const std::exception& problem) {
        driver.complaint = "Driver name parse error: \"" + driver.name +
                           "\" has an unknown name format: " + problem.what();
    }
    return driver;
}

bool newer(const Driver& a, const Driver& b) {
    return std::tie(a.core, a.revision, a.patch, a.version, a.release) >
           std::tie(b.core, b.revision, b.patch, b.version, b.release);
}

std::string display_name(const std::string& core_name) {
    const std::map<std::string, std::string> names = {
        {"k30x", "Vexa-K300"}, {"k32x", "Vexa-K320"}, {"k42x", "Vexa-K420"}, {"k46x", "Vexa-K460"},
        {"k52x", "Vexa-K520"}, {"k53x", "Vexa-K530"}, {"k56x", "Vexa-K560"}, {"k58x", "Vexa-K580"}};
    const auto found = names.find(core_name);
    return found == names.end() ? core_name : found->second;
}

bool blacklisted(const std::string& core_name) {
    for (const std::string listed : {"Vexa-100", "Vexa-K350", "Vexa-K370"})
        if (listed.find(core_name) != npos)
            return true;
    return false;
}

Rank read_rank(const std::string& core_display_name, const std::string& revision) {
    Rank rank = {};
    read_core(core_display_name, rank[0]);
    read_revision(revision, rank);
    return rank;
}

} // namespace model
