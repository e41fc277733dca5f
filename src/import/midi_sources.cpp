#include "import/midi_sources.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "boundary/midi_bytes.h"

namespace marlune {

namespace {

constexpr int kChannels = 16;
constexpr int kNotes = 128;
constexpr std::size_t kClosed = std::numeric_limits<std::size_t>::max();

using ChannelNotes = std::array<std::vector<MidiNote>, kChannels>;

ChannelNotes notesOf(const MidiFileTrack& track, double stepsPerTick) {
    ChannelNotes notes;
    std::array<std::array<std::size_t, kNotes>, kChannels> open;
    for (auto& channel : open) channel.fill(kClosed);
    const double end = track.events.empty() ? 0 : track.events.back().tick * stepsPerTick;
    for (const MidiFileEvent& event : track.events) {
        const int kind = statusKind(event.status);
        if (kind != kNoteOn && kind != kNoteOff) continue;
        const int channel = channelOfStatus(event.status);
        std::size_t& sounding = open[channel][event.data1];
        const double now = event.tick * stepsPerTick;
        if (sounding != kClosed) notes[channel][sounding].end = now;
        sounding = kClosed;
        if (kind == kNoteOff || event.data2 == 0) continue;
        sounding = notes[channel].size();
        notes[channel].push_back({now, end, event.data1, event.data2});
    }
    return notes;
}

// What can be seen of a name on any panel.
std::string plainText(const std::string& name) {
    constexpr std::size_t kLongest = 24;
    std::string plain;
    for (const char c : name.substr(0, kLongest)) plain += c >= ' ' && c <= '~' ? c : '?';
    return plain;
}

void finish(MidiSource& source, const std::string& name) {
    std::ranges::stable_sort(source.notes, {}, &MidiNote::start);
    source.label = "Channel " + std::to_string(source.channel + 1) + (name.empty() ? "" : ", " + name) +
                   ": " + std::to_string(source.notes.size()) +
                   (source.notes.size() == 1 ? " note" : " notes");
}

} // namespace

std::vector<MidiSource> midiSources(const MidiSong& song) {
    std::vector<ChannelNotes> tracks;
    for (const MidiFileTrack& track : song.tracks) tracks.push_back(notesOf(track, song.stepsPerTick));
    std::vector<MidiSource> sources;
    for (int channel = 0; channel < kChannels; ++channel) {
        MidiSource whole{channel, kEveryTrack, "", {}};
        std::vector<MidiSource> parts;
        for (std::size_t t = 0; t < tracks.size(); ++t) {
            const auto& notes = tracks[t][channel];
            if (notes.empty()) continue;
            whole.notes.insert(whole.notes.end(), notes.begin(), notes.end());
            parts.push_back({channel, static_cast<int>(t), "", notes});
        }
        if (parts.empty()) continue;
        finish(whole, parts.size() == 1 ? plainText(song.tracks[parts[0].track].name) : "");
        sources.push_back(std::move(whole));
        for (MidiSource& part : parts) {
            if (parts.size() == 1) break;
            const std::string name = plainText(song.tracks[part.track].name);
            finish(part, name.empty() ? "track " + std::to_string(part.track + 1) : name);
            sources.push_back(std::move(part));
        }
    }
    return sources;
}

int nearestStep(double place) {
    return static_cast<int>(std::floor(std::min(place, 1e9) + 0.5));
}

} // namespace marlune
