// Stopping a long colour conversion with a mouse click.
#pragma once

// Takes one message out of the thread's queue. When it is the press of a mouse button, beeps and returns true; any
// other message is lost.
bool UserAbortRequested();
