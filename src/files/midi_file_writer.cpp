#include "files/midi_file_writer.h"

#include <algorithm>

#include "boundary/midi_bytes.h"
#include "util/whole_file.h"

namespace marlune {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int kLongestDelta = 0x0FFFFFFF; // four groups of seven bits
constexpr int kSlowestTempo = 0xFFFFFF;
constexpr std::size_t kMostTracks = 0xFFFF;
constexpr std::uint8_t kMeta = 0xFF;
constexpr int kTempoType = 0x51;
constexpr int kTimeSignatureType = 0x58;
constexpr std::array<std::uint8_t, 4> kEndOfTrack{0, kMeta, 0x2F, 0}; // after a delta of 0

std::uint8_t lowByte(std::uint32_t value) {
    return static_cast<std::uint8_t>(value & 0xFFU);
}
std::uint8_t sevenBits(int value) {
    return static_cast<std::uint8_t>(value & 0x7F);
}

// Seven bits a byte, most significant first; all but the last byte have their top bit set.
void appendLength(Bytes& out, std::uint32_t value) {
    for (int shift = 21; shift > 0; shift -= 7) {
        if (value >> shift != 0) out.push_back(lowByte(0x80U | ((value >> shift) & 0x7FU)));
    }
    out.push_back(lowByte(value & 0x7FU));
}

void appendBigEndian(Bytes& out, std::uint32_t value, int bytes) {
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) out.push_back(lowByte(value >> shift));
}

void appendChunk(Bytes& out, std::string_view name, std::size_t size) {
    for (const char c : name) out.push_back(static_cast<std::uint8_t>(c));
    appendBigEndian(out, static_cast<std::uint32_t>(size), 4);
}

bool hasSecondByte(int status) {
    return statusKind(status) != kProgramChange && statusKind(status) != kChannelPressure;
}

} // namespace

int MemoryMidiFile::addTrack() {
    if (tracks_.size() < kMostTracks) tracks_.emplace_back();
    current_ = tracks_.size() - 1;
    return static_cast<int>(current_);
}

void MemoryMidiFile::chooseTrack(int track) {
    if (track >= 0 && static_cast<std::size_t>(track) < tracks_.size())
        current_ = static_cast<std::size_t>(track);
}

void MemoryMidiFile::event(int delta, int status, int data1, int data2) {
    if (tracks_.empty() || status < kNoteOff || status >= kSystem) return;
    Bytes& track = tracks_[current_];
    appendLength(track, static_cast<std::uint32_t>(std::clamp(delta, 0, kLongestDelta)));
    track.push_back(static_cast<std::uint8_t>(status));
    track.push_back(sevenBits(data1));
    if (hasSecondByte(status)) track.push_back(sevenBits(data2));
}

void MemoryMidiFile::meta(int type, const std::uint8_t* data, std::size_t size) {
    if (tracks_.empty()) return;
    Bytes& track = tracks_[current_];
    track.insert(track.end(), {0, kMeta, sevenBits(type)});
    size = std::min<std::size_t>(size, kLongestDelta); // lengths are written like deltas
    appendLength(track, static_cast<std::uint32_t>(size));
    track.insert(track.end(), data, data + size);
}

void MemoryMidiFile::text(int type, std::string_view text) {
    meta(type, reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
}

void MemoryMidiFile::timeSignature(const std::array<std::uint8_t, 4>& bytes) {
    meta(kTimeSignatureType, bytes.data(), bytes.size());
}

void MemoryMidiFile::tempo(int microseconds) {
    Bytes data;
    appendBigEndian(data, static_cast<std::uint32_t>(std::clamp(microseconds, 1, kSlowestTempo)), 3);
    meta(kTempoType, data.data(), data.size());
}

std::vector<std::uint8_t> MemoryMidiFile::bytes() const {
    std::size_t size = 14;
    for (const Bytes& track : tracks_) size += 8 + track.size() + kEndOfTrack.size();
    Bytes out;
    out.reserve(size);
    appendChunk(out, "MThd", 6);
    for (const std::size_t field : {std::size_t{1}, tracks_.size(), std::size_t{kMidiFileDivision}}) {
        appendBigEndian(out, static_cast<std::uint32_t>(field), 2);
    }
    for (const Bytes& track : tracks_) {
        appendChunk(out, "MTrk", track.size() + kEndOfTrack.size());
        out.insert(out.end(), track.begin(), track.end());
        out.insert(out.end(), kEndOfTrack.begin(), kEndOfTrack.end());
    }
    return out;
}

bool MemoryMidiFile::finish(const std::string& path) const {
    return writeFileAtomically(path, bytes());
}

} // namespace marlune
