#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace plinket3 {

/// A file's content in pieces, one behind the other, so that what a small change leaves as it was is never copied.
class BytePieces {
public:
    BytePieces() = default;
    explicit BytePieces(std::string whole) { Own(std::move(whole)); }
    BytePieces(BytePieces&&) = default;
    BytePieces& operator=(BytePieces&&) = default;
    BytePieces(const BytePieces&) = delete; // its pieces would be those of the other
    BytePieces& operator=(const BytePieces&) = delete;
    ~BytePieces() = default;

    /// Adds bytes that outlive this object. Few of them are copied, so that many changes make no more pieces than are
    /// good for writing them.
    void Borrow(std::string_view bytes) {
        constexpr std::size_t few = 16'384;
        if (bytes.size() < few)
            Own(std::string(bytes));
        else
            pieces_.push_back(bytes);
    }
    void Own(std::string bytes) {
        if (bytes.empty())
            return;
        if (!own_.empty() && !pieces_.empty() && pieces_.back().data() == own_.back().data())
            own_.back() += bytes;
        else {
            own_.push_back(std::move(bytes));
            pieces_.emplace_back();
        }
        pieces_.back() = own_.back();
    }

    const std::vector<std::string_view>& Pieces() const { return pieces_; }
    std::size_t Size() const {
        std::size_t size = 0;
        for (const std::string_view piece : pieces_)
            size += piece.size();
        return size;
    }
    /// `size` bytes from the offset `begin` on, fewer when there are no more.
    std::string Part(std::size_t begin, std::size_t size) const {
        std::string part;
        for (std::string_view piece : pieces_) {
            const std::size_t skipped = std::min(begin, piece.size());
            piece.remove_prefix(skipped);
            begin -= skipped;
            part += piece.substr(0, size - part.size());
        }
        return part;
    }
    std::string Joined() const { return Part(0, Size()); }

private:
    std::deque<std::string> own_; // whose elements never move
    std::vector<std::string_view> pieces_;
};

} // namespace plinket3
