// SPDX-License-Identifier: MIT
#include "digest.hpp"

#include "hexadecimal.hpp"

#include <new>
#include <xxhash.h>

namespace vexacm_tool {

void Digest::Free::operator()(XXH3_state_s* state) const {
    XXH3_freeState(state);
}

Digest::Digest() : state_(XXH3_createState()) {
    if (!state_)
        throw std::bad_alloc();
    XXH3_128bits_reset(state_.get());
}

Digest& Digest::add(std::uint64_t number) {
    XXH3_128bits_update(state_.get(), &number, sizeof number);
    return *this;
}

Digest& Digest::add(std::string_view text) {
    add(std::uint64_t{text.size()});
    XXH3_128bits_update(state_.get(), text.data(), text.size());
    return *this;
}

Digest& Digest::add(const std::vector<std::string>& texts) {
    add(std::uint64_t{texts.size()});
    for (const std::string& text : texts)
        add(text);
    return *this;
}

std::string Digest::text() const {
    XXH128_canonical_t bytes;
    XXH128_canonicalFromHash(&bytes, XXH3_128bits_digest(state_.get()));
    return hexadecimal({reinterpret_cast<const char*>(bytes.digest), sizeof bytes.digest});
}

} // namespace vexacm_tool
