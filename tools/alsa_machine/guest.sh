# What is tried inside the emulated machine; what comes of it is left in /share/out for verdict.py.
modprobe snd-aloop index=0; modprobe snd-seq; modprobe snd-seq-dummy; modprobe snd-virmidi midi_devs=1
cd /share/out
cli=/share/bin/marlune-cli peer=/share/bin/peer song=/share/examples/harbour_nights.mlp
virmidi=/sys/bus/platform/drivers/snd_virmidi device="Virtual Raw MIDI 1-0:VirMIDI 1-0"
play() { # NAME OPTION...
    local name=$1; shift
    $cli play $song --config "${config:-/share/examples/starter}" --log $name.log "$@" >/dev/null 2>$name.err
    echo "$name: rc $?, $(tr '\n' ' ' <$name.err)"
}
for_client() { for _ in $(seq 100); do aconnect -l | grep -q "'$1" && return; sleep 0.1; done; }
echo "up after $(cut -d' ' -f1 /proc/uptime) s"
( time $cli ports >ports.txt ) 2>&1 | grep real
$peer listen Recorder 120 >client.wire & recorder=$!
for_client Recorder
play client --out Recorder --bars 4
kill $recorder
( for_client "Marlune 200Q Out"; exec $peer listen Ear 30 "Marlune 200Q" >virtual.wire ) & ear=$!
play virtual --out 1 --bars 8
kill $ear
( for_client "Marlune 200Q In"; sleep 2; $peer say "Marlune 200Q" "Marlune 200Q In" 600 "b0 0c 7f" "b0 0c 05" ) &
play input --out 1 --bars 6
mkdir -p from_virmidi; cp /share/examples/starter/* from_virmidi/ # input device 2, behind ours and Midi Through
printf '\002' | dd of=from_virmidi/marlune.cfg bs=1 seek=494 conv=notrunc 2>/dev/null
( for_client "Marlune 200Q In"; sleep 2
  for n in 1 2 3 4 5 6 7 8; do
      printf "\xb0\x0c\x2$n" >/dev/snd/midiC1D0; sleep 1
      [ $n = 2 ] && { echo snd_virmidi.0 >$virmidi/unbind; echo snd_virmidi.0 >$virmidi/bind; sleep 2; }
  done ) & hand=$!
config=from_virmidi; play input_blink --out 1 --bars 9; config=
wait $hand
vanish() { # NAME SECONDS: the device is pulled for so long while it is played to
    ( sleep 4; echo snd_virmidi.0 >$virmidi/unbind; sleep $2; echo snd_virmidi.0 >$virmidi/bind; sleep 0.3
      timeout 8 cat /dev/snd/midiC1D0 >$1.raw ) & local hand=$!
    play $1 --out "$device" --bars 9
    wait $hand
}
vanish gone_long 3
vanish gone_blink 0
$peer listen Recorder 120 >return1.wire & recorder=$!
for_client Recorder
# Between two looks of the program, whatever the speed of this machine: it stands still meanwhile.
( sleep 4; stopped=$(pgrep -n -f "marlune-cli play"); kill -STOP $stopped; kill $recorder
  $peer listen Recorder 15 >return2.wire & sleep 1.5; kill -CONT $stopped; wait ) & second=$!
play program_blink --out Recorder --bars 9
wait $second
$cli play $song --config /share/examples/starter --out 1 --bars 5 >/dev/null 2>two.err & first=$!
sleep 1; play second_at_once --out 1 --bars 1; wait $first; echo "first of two: rc $?"
( sleep 4; cat /proc/asound/card0/pcm0p/sub0/hw_params >pcm.txt
  format=$(sed -n 's/^format: //p' pcm.txt) rate=$(sed -n 's/^rate: \([0-9]*\).*/\1/p' pcm.txt)
  arecord -q -D hw:0,1 -f $format -r $rate -c $(sed -n 's/^channels: //p' pcm.txt) -d 3 -t raw sound.raw ) &
play synth --out 0 --bars 5
wait $!
cat /proc/uptime | cut -d' ' -f1 >end
