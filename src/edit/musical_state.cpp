#include "edit/musical_state.h"

#include <algorithm>
#include <cstring>

#include "panel/editing.h"
#include "panel/groove_edits.h"
#include "panel/knobs.h"
#include "panel/refresh.h"
#include "project/pattern_push.h"
#include "project/recording.h"
#include "project/song_track.h"
#include "song/song_moves.h"
#include "song/song_place.h"

namespace marlune {

namespace {

template <typename T>
std::span<std::uint8_t> bytesOf(T& object) {
    static_assert(std::is_trivially_copyable_v<T>);
    return {reinterpret_cast<std::uint8_t*>(&object), sizeof object};
}

// The pieces by their place in musicalPieces().
enum Piece {
    kBass0,
    kBass1,
    kDrumPiece,
    kKnobPiece,
    kTempoPiece,
    kNoteMapPiece,
    kBarPiece,
    kTrackPiece,
    kGroovePiece,
    kPieces
};

constexpr std::size_t kLongestCount = 255;
constexpr std::size_t kClose = 8; // equal bytes between two runs that are cheaper as part of them

void appendCoded(std::vector<std::uint8_t>& out, const std::uint8_t* bytes, std::size_t size) {
    for (std::size_t i = 0; i < size;) {
        std::size_t count = 1;
        while (count < kLongestCount && i + count < size && bytes[i + count] == bytes[i]) ++count;
        out.push_back(static_cast<std::uint8_t>(count));
        out.push_back(bytes[i]);
        i += count;
    }
}

// Writes a coded side through a routine that takes (offset, value).
template <typename Put>
void decode(const MusicRun& run, Side side, Put put) {
    const auto& coded = side == Side::before ? run.before : run.after;
    std::uint32_t offset = run.offset;
    for (std::size_t i = 0; i + 1 < coded.size(); i += 2) {
        for (int n = 0; n < coded[i]; ++n) put(offset++, coded[i + 1]);
    }
}

// The differing stretches of one piece that begins at `start` of the row.
void comparePiece(std::span<const std::uint8_t> was, std::span<const std::uint8_t> is, std::size_t start,
                  MusicDifference& out) {
    if (std::memcmp(was.data(), is.data(), is.size()) == 0) return;
    for (std::size_t i = 0; i < is.size(); ++i) {
        if (was[i] == is[i]) continue;
        std::size_t end = i + 1; // behind the last differing byte
        for (std::size_t j = end; j < is.size() && j < end + kClose; ++j) {
            if (was[j] != is[j]) end = j + 1;
        }
        MusicRun run{static_cast<std::uint32_t>(start + i), {}, {}};
        appendCoded(run.before, was.data() + i, end - i);
        appendCoded(run.after, is.data() + i, end - i);
        out.push_back(std::move(run));
        i = end;
    }
}

// Which of the things that need more than their bytes an application has changed.
struct Touched {
    bool patterns[kModules][kBanks * kPatterns] = {};
    bool knobs[kKnobs] = {};
    bool tempo = false;
    bool groove = false;
    bool tracks[kKnobs] = {};
    bool song = false;
};

void mark(Touched& touched, int piece, std::size_t at) {
    switch (piece) {
        case kBass0:
        case kBass1: touched.patterns[piece][at / sizeof(BassPattern)] = true; break;
        case kDrumPiece: touched.patterns[kDrumModule][at / sizeof(DrumPattern)] = true; break;
        case kKnobPiece: touched.knobs[at / sizeof(Le16)] = true; break;
        case kGroovePiece: touched.groove = true; break;
        case kTempoPiece: touched.tempo = true; break;
        case kBarPiece: touched.song = true; break;
        case kTrackPiece: touched.tracks[at / kSongTicks] = touched.song = true; break;
        default: break;
    }
}

void tellPatterns(const Touched& touched) {
    for (int m = 0; m < kModules; ++m) {
        for (int i = 0; i < kBanks * kPatterns; ++i) {
            if (touched.patterns[m][i]) pushPatternToEngine(m, i / kPatterns, i % kPatterns);
        }
        refreshPattern(m);
    }
}

} // namespace

std::vector<std::span<std::uint8_t>> musicalPieces() {
    return {bytesOf(project.bass[0].patterns),
            bytesOf(project.bass[1].patterns),
            bytesOf(project.drum.patterns),
            bytesOf(project.knobValue),
            bytesOf(project.tempo),
            bytesOf(project.noteMap),
            bytesOf(barTrack),
            bytesOf(knobTrack),
            bytesOf(project.groove)};
}

std::vector<std::uint8_t> captureMusic() {
    std::vector<std::uint8_t> music;
    for (const auto piece : musicalPieces()) music.insert(music.end(), piece.begin(), piece.end());
    return music;
}

MusicDifference differenceTo(const std::vector<std::uint8_t>& before, bool withKnobValues) {
    MusicDifference difference;
    std::size_t start = 0;
    const auto pieces = musicalPieces();
    for (int p = 0; p < kPieces; ++p) {
        const std::span was(before.data() + start, pieces[p].size());
        if (p != kKnobPiece || withKnobValues) comparePiece(was, pieces[p], start, difference);
        start += pieces[p].size();
    }
    return difference;
}

std::size_t sizeOf(const MusicDifference& difference) {
    std::size_t size = difference.capacity() * sizeof(MusicRun);
    for (const MusicRun& run : difference) size += run.before.capacity() + run.after.capacity();
    return size;
}

void putInto(std::vector<std::uint8_t>& music, const MusicDifference& difference, Side side) {
    for (const MusicRun& run : difference) {
        decode(run, side, [&music](std::uint32_t offset, std::uint8_t value) { music[offset] = value; });
    }
}

void applyMusic(const MusicDifference& difference, Side side) {
    const auto pieces = musicalPieces();
    Touched touched;
    for (const MusicRun& run : difference) {
        decode(run, side, [&](std::uint32_t offset, std::uint8_t value) {
            std::size_t at = offset;
            int piece = 0;
            while (at >= pieces[piece].size()) at -= pieces[piece++].size();
            pieces[piece][at] = value;
            mark(touched, piece, at);
        });
    }
    markProject();
    tellPatterns(touched);
    for (int knob = 0; knob < kKnobs; ++knob) {
        if (touched.knobs[knob]) refreshKnob(knob);
    }
    if (touched.tempo) refreshTempo();
    if (touched.groove) refreshGroove();
    if (!touched.song) return;
    // A knob whose movement was taken back would write it anew with the next tick.
    for (int knob = 0; knob < kKnobs; ++knob) {
        if (touched.tracks[knob]) endKnobRecording(knob);
    }
    takeUpSong();
    if (songPosition->songMode) refreshKnobsAtSongTick();
}

} // namespace marlune
