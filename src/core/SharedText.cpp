#include "core/SharedText.h"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <ostream>
#include <stdexcept>

namespace rq {

SharedText::SharedText(std::string_view text) {
    if (text.empty())
        return;
    if (text.size() > std::numeric_limits<std::uint32_t>::max() - sizeof(Buffer))
        throw std::length_error("text too long");
    void* raw = std::malloc(sizeof(Buffer) + text.size() + 1);
    if (!raw)
        throw std::bad_alloc();
    buf_ = static_cast<Buffer*>(raw);
    new (&buf_->refs) std::atomic<std::uint32_t>(1);
    buf_->size = static_cast<std::uint32_t>(text.size());
    std::memcpy(buf_->text(), text.data(), text.size());
    buf_->text()[text.size()] = '\0';
}

void SharedText::release() noexcept {
    if (buf_ && buf_->refs.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        buf_->refs.~atomic();
        std::free(buf_);
    }
    buf_ = nullptr;
}

std::ostream& operator<<(std::ostream& os, const SharedText& t) {
    return os << t.view();
}

SharedText SharedTextPool::get(std::string_view text) {
    if (text.empty())
        return {};
    auto it = texts_.find(text);
    if (it != texts_.end())
        return it->second;
    SharedText made(text);
    if (texts_.size() < limit_)
        texts_.emplace(made.view(), made);
    return made;
}

} // namespace rq
