#include "platform/alsa_announce.h"

#include <alsa/asoundlib.h>

#include <cerrno>

#include "platform/port_system.h"

namespace marlune {

AlsaAnnounce::AlsaAnnounce() {
    if (snd_seq_open(&sequencer_, "default", SND_SEQ_OPEN_INPUT, SND_SEQ_NONBLOCK) < 0) {
        sequencer_ = nullptr;
        return;
    }
    snd_seq_set_client_name(sequencer_, kClientName);
    // Not to be seen by others: it takes no subscription but its own.
    const int port = snd_seq_create_simple_port(sequencer_, "announcements",
                                                SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_NO_EXPORT,
                                                SND_SEQ_PORT_TYPE_APPLICATION);
    if (port >= 0)
        snd_seq_connect_from(sequencer_, port, SND_SEQ_CLIENT_SYSTEM, SND_SEQ_PORT_SYSTEM_ANNOUNCE);
}

AlsaAnnounce::~AlsaAnnounce() {
    if (sequencer_ != nullptr) snd_seq_close(sequencer_);
}

void AlsaAnnounce::poll() {
    if (sequencer_ == nullptr) return;
    snd_seq_event_t* event = nullptr;
    for (int result = 0; (result = snd_seq_event_input(sequencer_, &event)) != -EAGAIN;) {
        if (result == -ENOSPC) {
            ++missed_; // more came than its queue holds
            continue;
        }
        if (result < 0) return;
        if (event->type == SND_SEQ_EVENT_CLIENT_EXIT) ++clientsLeft_[event->data.addr.client];
        if (event->type == SND_SEQ_EVENT_PORT_EXIT) ++left_[{event->data.addr.client, event->data.addr.port}];
    }
}

std::uint32_t AlsaAnnounce::departures(int client, int port) const {
    const auto ofPort = left_.find({client, port});
    const auto ofClient = clientsLeft_.find(client);
    return missed_ + (ofPort != left_.end() ? ofPort->second : 0) +
           (ofClient != clientsLeft_.end() ? ofClient->second : 0);
}

} // namespace marlune
