// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace vexacm_tool {

/// What a worker sends: its length, what it is, and its text. A worker is sent
/// numbers of jobs, each a std::uint64_t.
enum class Message : std::uint8_t {
    result,     ///< Result_head and the result's line
    probed,     ///< ID of a compiler and what was printed while it was asked for its extensions
    memory_out, ///< nothing: the process is about to end because there is no more memory
    opened      ///< nothing: of a trial, that the plug-ins could be opened and closed
};

struct Message_head {
    std::uint32_t size; ///< of what follows the head
    Message message;
};

struct Result_head {
    std::uint64_t job;
    std::uint8_t outcome = 0;
    bool is_last = false;         ///< the worker ends after it
    bool is_cached = false;       ///< it was in the cache
    bool is_stored = false;       ///< it is now
    std::int32_t store_error = 0; ///< the number of why it could not be stored
};

constexpr std::uint32_t LARGEST_MESSAGE = 1U << 30;

/// Both ends are one program: records travel as they lie in memory.
template <class Record>
std::string_view bytes_of_record(const Record& record) {
    return {reinterpret_cast<const char*>(&record), sizeof record};
}

/// Takes a record from the front of a text that is long enough.
template <class Record>
Record take_record(std::string_view& text) {
    Record record;
    std::memcpy(&record, text.data(), sizeof record);
    text.remove_prefix(sizeof record);
    return record;
}

} // namespace vexacm_tool
