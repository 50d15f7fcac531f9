// The user's attention while the program computes.
#pragma once

// Takes the next message out of the calling thread's queue, whatever it is. True when it was the press of the left or
// the right mouse button; any other message is lost. Where there are no windows there is never one.
bool TakeMousePress();

// A short sound: the user's wish has been noted.
void SoundBeep();
