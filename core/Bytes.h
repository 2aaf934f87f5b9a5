#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace plinket3 {

/// Reads little-endian numbers and texts from bytes and knows where they end: a number past the end is 0, a text past
/// the end is shorter, so that no count in a file takes memory that the file does not have.
class ByteReader {
public:
    explicit ByteReader(std::string_view bytes, std::size_t position = 0) : bytes_(bytes), position_(position) {}

    std::uint8_t Byte() {
        if (position_ >= bytes_.size())
            return 0;
        return static_cast<std::uint8_t>(bytes_[position_++]);
    }
    std::uint16_t UInt16() {
        const unsigned low = Byte();
        return static_cast<std::uint16_t>(low | static_cast<unsigned>(Byte()) << 8);
    }
    std::int32_t Int32() {
        if (Left() >= sizeof(std::int32_t)) { // as nearly always
            const char* bytes = bytes_.data() + position_;
            const auto byte = [bytes](int at) { return std::uint32_t{static_cast<std::uint8_t>(bytes[at])}; };
            position_ += sizeof(std::int32_t);
            return static_cast<std::int32_t>(byte(0) | byte(1) << 8 | byte(2) << 16 | byte(3) << 24);
        }
        const std::uint32_t low = UInt16();
        return static_cast<std::int32_t>(low | static_cast<std::uint32_t>(UInt16()) << 16);
    }
    /// `count` bytes, fewer at the end of the bytes; none for a negative count.
    std::string_view Text(std::int64_t count) {
        if (count <= 0 || position_ >= bytes_.size())
            return {};
        const std::size_t left = bytes_.size() - position_;
        const std::size_t taken = static_cast<std::uint64_t>(count) < left ? static_cast<std::size_t>(count) : left;
        const std::string_view text = bytes_.substr(position_, taken);
        position_ += taken;
        return text;
    }
    bool AtEnd() const { return Left() == 0; }
    /// How many bytes follow.
    std::size_t Left() const { return position_ >= bytes_.size() ? 0 : bytes_.size() - position_; }

private:
    std::string_view bytes_;
    std::size_t position_;
};

/// Appends little-endian numbers and texts to a buffer.
class ByteWriter {
public:
    void Byte(std::int32_t value) { bytes_ += static_cast<char>(value & 0xff); }
    void UInt16(std::int32_t value) {
        Byte(value);
        Byte(value >> 8);
    }
    void Int32(std::int32_t value) {
        UInt16(value);
        UInt16(value >> 16);
    }
    void Text(std::string_view text) { bytes_ += text; }
    std::string Take() { return std::move(bytes_); }

private:
    std::string bytes_;
};

} // namespace plinket3
