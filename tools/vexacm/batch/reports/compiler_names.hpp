// SPDX-License-Identifier: MIT
#pragma once

#include "matrix.hpp"

#include <string>
#include <vector>

namespace vexacm_tool {

/// The items behind a start, with commas between them, in lines of 80 columns
/// where the items allow it, the second and later indented.
std::string wrapped_list(const std::string& start, const std::vector<std::string>& items,
                         std::size_t indentation);

/// Names some of these compilers (numbers of the matrix, in order), driver by
/// driver and in short where all of one are meant.
class Compiler_names {
public:
    using Numbers = std::vector<std::size_t>;

    Compiler_names(const Matrix& matrix, Numbers all);

    /// One line for each driver, or more where they are long.
    std::string text(const std::string& start, const Numbers& some) const;

private:
    std::string driver(std::size_t compiler) const;
    std::string core(std::size_t compiler) const;
    Numbers of_driver(const Numbers& some, const std::string& driver) const;

    const Matrix& matrix_;
    Numbers all_;
};

} // namespace vexacm_tool
