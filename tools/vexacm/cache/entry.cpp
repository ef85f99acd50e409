// SPDX-License-Identifier: MIT
#include "entry.hpp"

#include "../batch/descriptor.hpp"
#include "../digest.hpp"
#include "folder.hpp"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <string_view>
#include <sys/stat.h>

namespace vexacm_tool {

namespace {

using Texts = std::vector<std::string>;

constexpr std::size_t DIGEST_SIZE = 32;

// Numbers lie as in memory: to a machine of the other kind this is no entry.
constexpr std::uint64_t MAGIC = 0x3165686361637876; // "vxcache1"

struct Head {
    std::uint64_t magic = MAGIC;
    char digest[DIGEST_SIZE] = {}; ///< of all but itself
    char key[DIGEST_SIZE] = {};
    std::uint64_t texts_size = 0;
    std::uint64_t binary_size = 0;
};

std::string digest_of(std::string_view key, std::string_view texts, std::string_view binary) {
    return Digest().add(key).add(texts).add(binary).text();
}

std::string_view text_of(const char (&text)[DIGEST_SIZE]) {
    return {text, DIGEST_SIZE};
}

void append(std::string& bytes, std::uint64_t number) {
    bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

void append(std::string& bytes, std::string_view text) {
    append(bytes, std::uint64_t{text.size()});
    bytes.append(text);
}

void append(std::string& bytes, const Texts& texts) {
    append(bytes, std::uint64_t{texts.size()});
    for (const std::string& text : texts)
        append(bytes, std::string_view(text));
}

/// Takes apart what was appended. Throws std::out_of_range where it ends too early.
class Reader {
public:
    explicit Reader(std::string_view bytes) : rest_(bytes) {}

    std::uint64_t number() {
        std::uint64_t number = 0;
        std::memcpy(&number, take(sizeof number).data(), sizeof number);
        return number;
    }
    std::string text() { return std::string(take(number())); }
    // A count that is too great comes to the end soon: each item takes some bytes.
    Texts texts() {
        Texts found;
        for (std::uint64_t count = number(); count > 0; --count)
            found.push_back(text());
        return found;
    }
    std::vector<Texts> lists() {
        std::vector<Texts> found;
        for (std::uint64_t count = number(); count > 0; --count)
            found.push_back(texts());
        return found;
    }
    bool is_at_end() const { return rest_.empty(); }

private:
    std::string_view take(std::uint64_t size) {
        if (size > rest_.size())
            throw std::out_of_range("entry");
        const std::string_view taken = rest_.substr(0, size);
        rest_.remove_prefix(size);
        return taken;
    }

    std::string_view rest_;
};

bool read_whole(int file, char* to, std::size_t size) {
    while (size > 0) {
        const ssize_t count = ::read(file, to, size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        to += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

// Neither waits for a pipe nor goes where a link leads.
Descriptor open_regular_file(const std::string& file, std::uint64_t& size) {
    Descriptor in{::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW)};
    struct stat status {};
    if (in.get() < 0 || ::fstat(in.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    size = static_cast<std::uint64_t>(status.st_size);
    return in;
}

// Lengths are compared with the file's before anything is made of them.
bool is_plausible(const Head& head, const std::string& key, std::uint64_t size) {
    const std::uint64_t rest = size - sizeof head;
    return head.magic == MAGIC && text_of(head.key) == key && head.texts_size <= rest &&
           head.binary_size == rest - head.texts_size;
}

} // namespace

Entry::Entry(const std::string& key, const Compiled& compiled)
    : texts_(sizeof(Head), '\0'), binary_(compiled.binary) {
    append(texts_, std::uint64_t{compiled.has_errors});
    append(texts_, compiled.errors);
    append(texts_, compiled.warnings);
    append(texts_, std::uint64_t{compiled.tables.size()});
    for (const Texts& table : compiled.tables)
        append(texts_, table);
    append(texts_, compiled.binary_size);
    append(texts_, std::string_view(compiled.printed));

    Head head;
    head.texts_size = texts_.size() - sizeof head;
    head.binary_size = binary_.size();
    key.copy(head.key, DIGEST_SIZE);
    const std::string_view texts = std::string_view(texts_).substr(sizeof head);
    digest_of(key, texts, binary_).copy(head.digest, DIGEST_SIZE);
    std::memcpy(texts_.data(), &head, sizeof head);
}

std::uint64_t Entry::blocks() const {
    return blocks_of(texts_.size() + binary_.size());
}

int Entry::write_to(int file) const {
    const int error = write_bytes(file, texts_);
    return error != 0 ? error : write_bytes(file, binary_);
}

std::optional<Compiled> read_entry(const std::string& file, const std::string& key,
                                   std::uint64_t most_blocks) {
    std::uint64_t size = 0;
    const Descriptor in = open_regular_file(file, size);
    Head head;
    if (in.get() < 0 || size < sizeof head || blocks_of(size) > most_blocks ||
        !read_whole(in.get(), reinterpret_cast<char*>(&head), sizeof head) ||
        !is_plausible(head, key, size))
        return std::nullopt;
    std::string texts(head.texts_size, '\0');
    Compiled compiled;
    compiled.binary.resize(head.binary_size);
    if (!read_whole(in.get(), texts.data(), texts.size()) ||
        !read_whole(in.get(), compiled.binary.data(), compiled.binary.size()) ||
        digest_of(key, texts, compiled.binary) != text_of(head.digest))
        return std::nullopt;
    try {
        Reader reader(texts);
        compiled.has_errors = reader.number() != 0;
        compiled.errors = reader.texts();
        compiled.warnings = reader.texts();
        compiled.tables = reader.lists();
        compiled.binary_size = reader.number();
        compiled.printed = reader.text();
        if (!reader.is_at_end())
            return std::nullopt;
    } catch (const std::out_of_range&) {
        return std::nullopt;
    }
    // Used just now. Where the file may not be changed, it counts as not used.
    ::futimens(in.get(), nullptr);
    return compiled;
}

} // namespace vexacm_tool
