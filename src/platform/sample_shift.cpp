#include "platform/sample_shift.h"

#include <algorithm>

namespace marlune {

void SampleShift::noteAt(int frame) noexcept {
    if (lastNoteBlock_ == written_) return;
    lastNoteBlock_ = written_;
    frame = std::clamp(frame, 0, kBlock - 1);
    if (!used_) shift_ = frame; // nothing sounds yet that could be torn
    used_ = true;
    const int before = waiting_ > 0 ? fades_[waiting_ - 1].shift : shift_;
    if (frame == before || waiting_ == static_cast<int>(fades_.size())) return;
    // The fade has to be over before either reader meets the new block.
    const std::int64_t to = written_ + std::min(frame, before);
    std::int64_t from = to - kFade;
    if (waiting_ > 0) from = std::max(from, fades_[waiting_ - 1].to);
    fades_[waiting_++] = {frame, from, to};
}

void SampleShift::pass(const float* inLeft, const float* inRight, float* left, float* right) noexcept {
    for (int i = 0; i < kBlock; ++i) {
        const auto at = static_cast<std::size_t>(written_ + i) % kHistory;
        left_[at] = inLeft[i];
        right_[at] = inRight[i];
    }
    const std::int64_t first = written_ - kBlock;
    written_ += kBlock;
    for (int i = 0; i < kBlock; ++i) {
        const std::int64_t frame = first + i;
        while (waiting_ > 0 && frame >= fades_[0].to) {
            shift_ = fades_[0].shift;
            fades_[0] = fades_[1];
            --waiting_;
        }
        const auto a = static_cast<std::size_t>(frame - shift_ + kHistory) % kHistory;
        if (waiting_ == 0 || frame < fades_[0].from) {
            left[i] += left_[a];
            right[i] += right_[a];
            continue;
        }
        const Fade& fade = fades_[0];
        const auto b = static_cast<std::size_t>(frame - fade.shift + kHistory) % kHistory;
        const float part =
            static_cast<float>(frame - fade.from + 1) / static_cast<float>(fade.to - fade.from + 1);
        left[i] += left_[a] + part * (left_[b] - left_[a]);
        right[i] += right_[a] + part * (right_[b] - right_[a]);
    }
}

} // namespace marlune
