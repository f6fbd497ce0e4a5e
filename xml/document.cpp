#include "xml/document.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace xml {

namespace {

constexpr std::size_t SMALLEST_BLOCK = 1024;
constexpr std::size_t LARGEST_BLOCK = 256 * 1024;
// Keeps what follows a block's header aligned as malloc's own results are.
constexpr std::size_t HEADER_SIZE = 16;

} // namespace

Document* Document::create(std::size_t expected_bytes) noexcept {
    void* memory = std::malloc(sizeof(Document));
    if (memory == nullptr)
        return nullptr;
    auto* document = new (memory) Document;
    document->next_block_size = std::clamp(expected_bytes, SMALLEST_BLOCK, LARGEST_BLOCK);
    return document;
}

void Document::release() noexcept {
    if (--handle_count > 0)
        return;
    for (Block* block = last_block; block != nullptr;) {
        Block* previous = block->previous;
        std::free(block);
        block = previous;
    }
    std::free(adopted_text);
    std::free(this);
}

char* Document::copy_string(const char* text, std::size_t length) noexcept {
    char* copy = allocate_array<char>(length + 1);
    if (copy == nullptr)
        return nullptr;
    std::memcpy(copy, text, length);
    copy[length] = '\0';
    return copy;
}

// A request larger than the block size gets a separate block, and the current block stays in use.
void* Document::allocate_in_new_block(std::size_t bytes) noexcept {
    static_assert(sizeof(Block) <= HEADER_SIZE);
    const std::size_t size = std::max(next_block_size, bytes + HEADER_SIZE);
    if (size < bytes)
        return nullptr;
    auto* block = static_cast<Block*>(std::malloc(size));
    if (block == nullptr)
        return nullptr;
    block->previous = last_block;
    last_block = block;
    char* result = reinterpret_cast<char*>(block) + HEADER_SIZE;
    if (size == next_block_size) {
        next_free = result + bytes;
        block_end = reinterpret_cast<char*>(block) + size;
        next_block_size = std::min(2 * next_block_size, LARGEST_BLOCK);
    }
    return result;
}

} // namespace xml
