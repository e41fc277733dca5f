// Integers as they lie in stored records: little-endian bytes, alignment 1, the same on every processor.
//
// A struct made of these has no padding, so copying its bytes is all the serialisation there is.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace marlune {

// Value semantics: converts to and from int. A value outside the range of Int keeps its low bytes.
template <typename Int>
class LittleEndian {
  public:
    constexpr LittleEndian() = default;
    // NOLINTNEXTLINE(google-explicit-constructor): stands wherever a number stands.
    constexpr LittleEndian(int value) {
        auto rest = static_cast<std::uint32_t>(value);
        for (std::uint8_t& byte : bytes_) {
            byte = static_cast<std::uint8_t>(rest & 0xFFU);
            rest >>= 8U;
        }
    }
    // NOLINTNEXTLINE(google-explicit-constructor)
    constexpr operator int() const {
        std::uint32_t value = 0;
        for (std::size_t i = sizeof(Int); i-- > 0;) value = (value << 8U) | bytes_[i];
        return static_cast<Int>(static_cast<std::make_unsigned_t<Int>>(value));
    }
    constexpr LittleEndian& operator+=(int delta) { return *this = *this + delta; }
    constexpr LittleEndian& operator-=(int delta) { return *this = *this - delta; }

  private:
    std::array<std::uint8_t, sizeof(Int)> bytes_{};
};

using Le8 = LittleEndian<std::uint8_t>;
using Le16 = LittleEndian<std::int16_t>;
using Le32 = LittleEndian<std::int32_t>;

// A 16-bit truth value: writes -1 for true and 0 for false, reads any non-zero as true, and carries an
// unusual true value through copies as it is.
class Flag16 {
  public:
    constexpr Flag16() = default;
    // NOLINTNEXTLINE(google-explicit-constructor)
    constexpr Flag16(bool on) : raw_(on ? -1 : 0) {}
    // NOLINTNEXTLINE(google-explicit-constructor)
    constexpr operator bool() const { return raw_ != 0; }
    // -1 or 0, the form in which the playback component takes truth values.
    [[nodiscard]] constexpr int number() const { return raw_ != 0 ? -1 : 0; }

  private:
    Le16 raw_;
};

static_assert(sizeof(Le16) == 2 && alignof(Le16) == 1 && sizeof(Le32) == 4 && sizeof(Flag16) == 2);

} // namespace marlune
