// Starts, stops and re-times the component's timer. User-interface thread.
#pragma once

namespace marlune {

// stepMs 0 stops the timer; any other value starts it, or changes its rate while it runs. The component gets
// a sixth of it, truncated. A start goes back to the bar line and places the component there; in pattern mode
// every module at its first step.
// Whoever starts or re-times sends the tempo behind stepMs first: see runTimerAt.
void QuenTimer(int stepMs);

// Sends the tempo (40..240) and starts or re-times the timer with the step length of it.
void runTimerAt(int tempo);

int timerInterval(); // step length in ms last given; 0 while the timer is stopped
void resetTimerControl();

} // namespace marlune
