// Another program on the ALSA sequencer.
//   peer listen NAME SECONDS [CLIENT]           writes what it hears, with the kernel's time in microseconds
//   peer say CLIENT PORT MILLISECONDS MESSAGE...  sends messages ("b0 0c 7f"), so many ms apart
#include <alsa/asoundlib.h>
static snd_seq_t* seq;
static int find(const char* client, const char* port, unsigned need, snd_seq_port_info_t* found) {
    snd_seq_client_info_t* each;
    snd_seq_client_info_alloca(&each);
    snd_seq_client_info_set_client(each, -1);
    while (snd_seq_query_next_client(seq, each) >= 0) {
        if (strcmp(snd_seq_client_info_get_name(each), client) != 0) continue;
        snd_seq_port_info_set_client(found, snd_seq_client_info_get_client(each));
        snd_seq_port_info_set_port(found, -1);
        while (snd_seq_query_next_port(seq, found) >= 0)
            if ((snd_seq_port_info_get_capability(found) & need) != 0 &&
                (port == NULL || strcmp(snd_seq_port_info_get_name(found), port) == 0))
                return 1;
    }
    return 0;
}
int main(int count, char** words) {
    const int listen = strcmp(words[1], "listen") == 0;
    if (snd_seq_open(&seq, "default", SND_SEQ_OPEN_DUPLEX, listen ? SND_SEQ_NONBLOCK : 0) != 0) return 1;
    snd_seq_set_client_name(seq, listen ? words[2] : "Speaker");
    snd_midi_event_t* coder;
    snd_midi_event_new(64, &coder);
    snd_midi_event_no_status(coder, 1);
    snd_seq_port_info_t *own, *other;
    snd_seq_port_info_alloca(&own);
    snd_seq_port_info_alloca(&other);
    snd_seq_port_info_set_name(own, listen ? words[2] : "Speaker");
    snd_seq_port_info_set_type(own, SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_APPLICATION);
    if (!listen) {
        snd_seq_port_info_set_capability(own, SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ);
        snd_seq_create_port(seq, own);
        if (!find(words[2], words[3], SND_SEQ_PORT_CAP_SUBS_WRITE, other)) return 2;
        snd_seq_connect_to(seq, snd_seq_port_info_get_port(own), snd_seq_port_info_get_client(other),
                           snd_seq_port_info_get_port(other));
        for (int i = 5; i < count; ++i) {
            unsigned char bytes[8];
            int size = 0;
            for (char* at = strtok(words[i], " "); at != NULL; at = strtok(NULL, " "))
                bytes[size++] = (unsigned char)strtol(at, NULL, 16);
            snd_seq_event_t event;
            snd_seq_ev_clear(&event);
            snd_midi_event_reset_encode(coder);
            snd_midi_event_encode(coder, bytes, size, &event);
            snd_seq_ev_set_source(&event, snd_seq_port_info_get_port(own));
            snd_seq_ev_set_subs(&event);
            snd_seq_ev_set_direct(&event);
            snd_seq_event_output_direct(seq, &event);
            usleep(1000 * atoi(words[4]));
        }
        return 0;
    }
    const int queue = snd_seq_alloc_queue(seq);
    snd_seq_port_info_set_capability(own, SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE);
    snd_seq_port_info_set_timestamping(own, 1);
    snd_seq_port_info_set_timestamp_real(own, 1);
    snd_seq_port_info_set_timestamp_queue(own, queue);
    snd_seq_create_port(seq, own);
    snd_seq_start_queue(seq, queue, NULL);
    snd_seq_drain_output(seq);
    if (count > 4 && find(words[4], NULL, SND_SEQ_PORT_CAP_SUBS_READ, other))
        snd_seq_connect_from(seq, snd_seq_port_info_get_port(own), snd_seq_port_info_get_client(other),
                             snd_seq_port_info_get_port(other));
    for (long end = time(NULL) + atoi(words[3]); time(NULL) < end;) {
        struct pollfd ready[4];
        poll(ready, snd_seq_poll_descriptors(seq, ready, 4, POLLIN), 100);
        for (snd_seq_event_t* event; snd_seq_event_input(seq, &event) > 0;) {
            unsigned char bytes[64];
            const long size = snd_midi_event_decode(coder, bytes, sizeof bytes, event);
            if (size <= 0) continue;
            printf("%lld wire", event->time.time.tv_sec * 1000000LL + event->time.time.tv_nsec / 1000);
            for (long i = 0; i < size; ++i) printf(" %02x", bytes[i]);
            putchar('\n');
        }
        fflush(stdout);
    }
    return 0;
}
