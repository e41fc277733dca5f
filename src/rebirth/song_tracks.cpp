#include "rebirth/song_tracks.h"

#include "boundary/midi_bytes.h"

#include <algorithm>

namespace marlune {

namespace {

constexpr int kFirstEventSize = 3;
constexpr int kFirstParameter = 7;
constexpr int kRbsPitchBend = 16;
constexpr int kNoMidiForm = 22;
constexpr int kFirstKnob = 17; // to 21: cutoff, reso, envMod, decay, accent
constexpr int kFileTicksPerUnit = 15;
constexpr int kLongestDelta = 0x0FFFFFFF / kFileTicksPerUnit;

constexpr int kSizeField = 4, kDataField = 9; // offsets in a chunk
constexpr int kDataSizeLess = 6;              // the data are this much shorter than the size field says

std::int64_t sizeAt(const RbsImage& image, int offset) {
    std::int64_t size = 0;
    for (int i = 0; i < 4; ++i) size = size * 256 + image[offset + i];
    return size;
}

} // namespace

void Song_Tracks::SONG_Get_Data(int trackIndex, const RbsImage& image, bool& failed) {
    int start = kRbsSongTracks;
    for (int i = 0;; ++i) {
        const std::int64_t span = sizeAt(image, start + kSizeField) + 7;
        if (!image.holds(start + kSizeField, 4) || span > kRbsLongestSpan) {
            failed = true;
            return;
        }
        if (i == trackIndex) {
            const int dataSize = std::max(static_cast<int>(span) - 7 - kDataSizeLess, 0);
            if (dataSize > 0 && !image.holds(start + kDataField, dataSize)) {
                failed = true;
                return;
            }
            trackData.resize(static_cast<std::size_t>(dataSize));
            for (int k = 0; k < dataSize; ++k)
                trackData[k] = static_cast<std::uint8_t>(image[start + kDataField + k]);
            trackLast = dataSize - 1;
            rewind();
            drumReadPos = 0;
            return;
        }
        start += static_cast<int>(span) + 1;
    }
}

void Song_Tracks::rewind() {
    readPos = deltaCarry = runningTime = 0;
}

std::optional<Song_Tracks::Event> Song_Tracks::eventAt(int pos) const {
    if (pos > trackLast) return std::nullopt;
    int delta = at(pos++);
    if (delta > 128) { // 128 itself stands alone
        if (pos > trackLast) return std::nullopt;
        delta = (delta - 128) * 128 + at(pos++);
    }
    if (pos + 1 > trackLast) return std::nullopt;
    return Event{delta, at(pos), std::min<int>(at(pos + 1), kTopValue), pos + 2};
}

bool Song_Tracks::takeFirstEvent() {
    if (trackLast < kFirstEventSize - 1) {
        end();
        return false;
    }
    eventTime = 0;
    eventData1 = kFirstParameter;
    eventStatus = kControlChange + channel - 1;
    eventData2 = std::min<int>(at(2), kTopValue);
    readPos = kFirstEventSize;
    return true;
}

void Song_Tracks::SONG_Extract_303_One_Knob() {
    eventStatus = 0;
    if (readPos == 0) {
        takeFirstEvent();
        return;
    }
    const auto event = eventAt(readPos);
    if (!event) {
        end();
        return;
    }
    readPos = event->next;
    const int delta = std::min(deltaCarry + event->delta, kLongestDelta);
    runningTime += event->delta;
    const int parameter = event->parameter;
    if (parameter == kRbsPatternChange || parameter == kRbsPlayback || parameter == kNoMidiForm) {
        deltaCarry = delta;
        return;
    }
    eventTime = delta * kFileTicksPerUnit;
    deltaCarry = 0;
    if (parameter == kRbsPitchBend) {
        eventStatus = 0xE0 + channel - 1;
        eventData1 = event->value;
        eventData2 = 0;
        return;
    }
    eventStatus = kControlChange + channel - 1;
    eventData2 = event->value;
    const int controllers[] = {cutoffController, resoController, envModController, decayController,
                               accentController};
    if (parameter == 7 || parameter == 10 || parameter == 12) eventData1 = parameter;
    if (parameter >= kFirstKnob && parameter < kFirstKnob + 5)
        eventData1 = controllers[parameter - kFirstKnob];
}

void Song_Tracks::SONG_Extract_303_One_Knob_for_MarLune() {
    if (readPos == 0 && takeFirstEvent()) return;
    const auto event = eventAt(readPos);
    if (!event) {
        end();
        eventData1 = 0;
        return;
    }
    runningTime += event->delta;
    eventTime = runningTime;
    eventData1 = event->parameter;
    eventData2 = event->value;
    readPos = event->next;
}

void Song_Tracks::SONG_Pattern_Setup() {
    const auto whole = [this] { return readPos + 2 <= trackLast; };
    patternOn = false;
    do {
        readPos += 3;
    } while (whole() && !(at(readPos + 1) == kRbsPatternChange && at(readPos + 2) < kRbsPatterns));
    if (!whole()) {
        end();
        return;
    }
    previousPattern = currentPattern = at(readPos + 2);
    readPos += 3;
    if (!whole()) {
        end();
        return;
    }
    patternOn = at(readPos + 2) == 1;
    readPos += 3;
}

PatternEvent::Kind Song_Tracks::patternEventKind() const {
    if (readPos >= trackLast) return PatternEvent::Kind::end;
    const int parameter = at(readPos - 2);
    if (parameter == kRbsPatternChange && at(readPos - 1) < kRbsPatterns) return PatternEvent::Kind::change;
    return parameter == kRbsPlayback ? PatternEvent::Kind::playback : PatternEvent::Kind::other;
}

PatternEvent Song_Tracks::SONG_Next_Pattern_Change() {
    int delta = 0;
    if (readPos > trackLast) return {PatternEvent::Kind::end, 0};
    for (;;) {
        const auto event = eventAt(readPos);
        if (!event) {
            end();
            previousPattern = currentPattern;
            return {PatternEvent::Kind::end, delta};
        }
        delta += event->delta;
        readPos = event->next;
        const PatternEvent::Kind kind = patternEventKind();
        if (kind == PatternEvent::Kind::other) continue;
        const bool switchedOn = kind == PatternEvent::Kind::playback && event->value == 1;
        if (!switchedOn) previousPattern = currentPattern;
        if (kind == PatternEvent::Kind::change) currentPattern = event->value;
        if (kind == PatternEvent::Kind::playback) patternOn = switchedOn;
        return {kind, delta};
    }
}

DrumEvent Song_Tracks::SONG_Extract_One_DRUM_Event() {
    if (drumReadPos == 0) drumReadPos = kFirstEventSize;
    const auto event = eventAt(drumReadPos);
    drumReadPos = event ? event->next : std::max(drumReadPos, trackLast) + 1;
    return event ? DrumEvent{event->parameter, event->value} : DrumEvent{0, 0};
}

} // namespace marlune
