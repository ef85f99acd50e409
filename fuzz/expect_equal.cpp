// SPDX-License-Identifier: MIT
#include <cstdio>
#include <cstdlib>

#include "target.hpp"

void expect_equal(const std::string& model, const std::string& library) {
    if (model == library)
        return;
    std::fprintf(stderr, "== model\n%s\n== library\n%s\n", model.c_str(), library.c_str());
    std::abort();
}
