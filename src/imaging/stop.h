// Stopping a long colour conversion.
#pragma once

// Asked again and again while work goes on. Whoever starts the work decides what stops it.
class StopQuestion {
public:
    virtual ~StopQuestion() = default;
    virtual bool StopRequested() = 0;
};

inline bool StopRequested(StopQuestion* stop) {
    return stop && stop->StopRequested();
}
