// Stopping a long colour conversion with a mouse click.
#pragma once

#include <cstdint>

// Flag of the conversions: a click may stop them. Without it they never look at the message queue.
constexpr unsigned kMayBeAborted = 2;

constexpr uint16_t kAbortedByUser = 4;

// 0 from the start of a conversion on, kAbortedByUser once the user has stopped it: tells a caller that got no result
// whether the user wanted none or memory ran out.
extern uint16_t abortStatus;

// Takes one message out of the thread's queue. When it is the press of a mouse button, sets `abortStatus`, beeps and
// returns true; any other message is lost.
bool UserAbortRequested();

inline bool StopRequested(unsigned flags) {
    return (flags & kMayBeAborted) && UserAbortRequested();
}
