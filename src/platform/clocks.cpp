#include "platform/clocks.h"

namespace marlune {

bool Clocks::offers(ClockKind kind) {
    if (kind == ClockKind::link) return link_ != nullptr;
    return kind != ClockKind::jack || jack_ != nullptr;
}

ClockSight Clocks::sight(ClockKind kind) {
    const ClockSource* source = kind == ClockKind::link   ? linkSource()
                                : kind == ClockKind::midi ? midi_
                                : kind == ClockKind::jack ? jackSource()
                                                          : nullptr;
    return source != nullptr ? source->sight() : ClockSight{};
}

void Clocks::choose(const ClockSettings& settings, double tempo) {
    kind_ = settings.kind;
    if (link_) link_->enable(kind_ == ClockKind::link, settings.shareStart, tempo);
    if (jack_ == nullptr) return;
    jack_->transport().setTempo(tempo);
    jack_->transport().choose(kind_ == ClockKind::jack, settings.followJack, settings.leadJack);
}

void Clocks::setTempo(double tempo) {
    if (kind_ == ClockKind::link && link_) link_->setTempo(tempo);
    if (jack_ != nullptr) jack_->transport().setTempo(tempo);
}

void Clocks::transport(bool running, int songTick) {
    if (jack_ != nullptr) jack_->transport().command(running, songTick);
}

} // namespace marlune
