// Waiting: all of it is sleeping between two looks, never blocking in the kernel.
#pragma once

// Sleeps for the whole time, however many signals arrive.
void PauseSeconds(unsigned seconds);
void PauseMilliseconds(unsigned milliseconds);
