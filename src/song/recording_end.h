// The end of a song recording, data and display together. User-interface thread.
#pragma once

namespace marlune {

// Recording is over, whatever ended it: the lamp goes out and song mode takes its knobs back. The tracks
// stay.
void endRecording();

} // namespace marlune
