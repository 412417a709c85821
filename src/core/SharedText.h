#pragma once
// An immutable text shared by handle: one pointer to a reference-counted buffer
// that holds the length, the bytes and a closing NUL. Copies share the buffer; the
// empty text is the null handle and costs no allocation. The count is atomic, since
// records made on one thread (a section read in parallel) are kept on another.
//
// Reads through an implicit std::string_view; compares with strings, views and C
// strings; str() gives an owned std::string.

#include <atomic>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <unordered_map>

namespace rq {

class SharedText {
public:
    SharedText() noexcept = default;
    SharedText(std::string_view text);
    SharedText(const std::string& text) : SharedText(std::string_view(text)) {}
    SharedText(const char* text) : SharedText(std::string_view(text)) {}
    SharedText(const SharedText& other) noexcept : buf_(other.buf_) { retain(); }
    SharedText(SharedText&& other) noexcept : buf_(other.buf_) { other.buf_ = nullptr; }
    ~SharedText() { release(); }

    SharedText& operator=(const SharedText& other) noexcept {
        SharedText(other).swap(*this);
        return *this;
    }
    SharedText& operator=(SharedText&& other) noexcept {
        SharedText(std::move(other)).swap(*this);
        return *this;
    }
    void swap(SharedText& other) noexcept { std::swap(buf_, other.buf_); }

    bool empty() const noexcept { return buf_ == nullptr; }
    std::size_t size() const noexcept { return buf_ ? buf_->size : 0; }
    const char* data() const noexcept { return buf_ ? buf_->text() : ""; }
    const char* c_str() const noexcept { return data(); }
    std::string_view view() const noexcept {
        return buf_ ? std::string_view(buf_->text(), buf_->size) : std::string_view();
    }
    operator std::string_view() const noexcept { return view(); }
    std::string str() const { return std::string(view()); }

    // True when both handles hold the same buffer (or both are empty).
    bool sharesWith(const SharedText& other) const noexcept { return buf_ == other.buf_; }
    // Handles on this text's buffer, this one included (0 for the empty text).
    std::size_t useCount() const noexcept {
        return buf_ ? buf_->refs.load(std::memory_order_relaxed) : 0;
    }

    friend bool operator==(const SharedText& a, std::string_view b) noexcept {
        return a.view() == b;
    }
    friend std::strong_ordering operator<=>(const SharedText& a, std::string_view b) noexcept {
        return a.view() <=> b;
    }

    friend std::string operator+(std::string a, const SharedText& b) {
        a += b.view();
        return a;
    }
    friend std::string operator+(const char* a, const SharedText& b) { return std::string(a) + b; }
    friend std::string operator+(const SharedText& a, std::string_view b) {
        std::string out(a.view());
        out += b;
        return out;
    }

    friend std::ostream& operator<<(std::ostream& os, const SharedText& t);

private:
    struct Buffer {
        std::atomic<std::uint32_t> refs;
        std::uint32_t size;
        // followed by the size bytes and a NUL
        char* text() noexcept { return reinterpret_cast<char*>(this + 1); }
    };
    void retain() const noexcept {
        if (buf_)
            buf_->refs.fetch_add(1, std::memory_order_relaxed);
    }
    void release() noexcept;

    Buffer* buf_ = nullptr;
};

// Hash of a text by its bytes, the same for SharedText, std::string and string_view
// (for transparent look-ups).
struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view s) const noexcept {
        return std::hash<std::string_view>{}(s);
    }
};

// Hands out one SharedText per distinct text seen: a reader keeps one for the values
// that repeat (type keywords, lengths, common initial values) so that identical texts
// share one buffer. Holds at most `limit` texts; past that it only copies.
class SharedTextPool {
public:
    explicit SharedTextPool(std::size_t limit = 256) : limit_(limit) {}
    SharedText get(std::string_view text);

private:
    std::size_t limit_;
    // Keys view the bytes of their own value's buffer, which never move.
    std::unordered_map<std::string_view, SharedText> texts_;
};

} // namespace rq
