#include "rebirth/rbs_image.h"

#include <algorithm>

namespace marlune {

namespace {

constexpr bool isFlagByte(int offset) {
    return offset % 8 == 6;
}

constexpr int flagByteOf(int offset) {
    return offset + (14 - offset % 8) % 8;
}
static_assert(flagByteOf(437) == 438 && flagByteOf(439) == 446 && flagByteOf(445) == 446);

} // namespace

RbsImage rbsImageOf(FileBytes file) {
    file.bytes.resize(std::min<std::size_t>(file.bytes.size(), kRbsLongestFile));
    return RbsImage(std::move(file.bytes));
}

int byteWithTopBit(const RbsImage& image, int offset, int flagOffset) {
    const int topBit = image[flagOffset] >> (flagOffset - offset - 1) & 1;
    return image[offset] | topBit << 7;
}

StepGroup readStepGroup(const RbsImage& image, int offset) {
    StepGroup group{};
    for (std::uint8_t& byte : group.bytes) {
        byte = static_cast<std::uint8_t>(image[offset]);
        ++offset;
        if (isFlagByte(offset)) ++offset; // also behind the last byte: the next group starts on a data byte
    }
    group.next = offset;
    return group;
}

RbsLengths readLengthTable(const RbsImage& image, int firstOffset) {
    RbsLengths lengths{};
    int offset = firstOffset;
    for (std::size_t p = 0; p < lengths.size(); p += 2) {
        if (isFlagByte(offset)) ++offset;
        const int both = byteWithTopBit(image, offset, flagByteOf(offset));
        lengths[p] = both / 16 + 1;
        lengths[p + 1] = both % 16 + 1;
        ++offset;
    }
    return lengths;
}

} // namespace marlune
