// Sees to it that no command changes the document behind the back of its history.
#pragma once

#include <string>

#include "gif/block_list.h"

// Everything of a document that is saved or can be seen, to be compared.
std::string StateOf(const BlockList& list);

// Stands around one command of the main window. When the command has changed the document, the last step must lead back
// to what the document was and forth again, and when it has not, there must be no new step; anything else fails the
// test. Commands that put another document into the window may start the history anew.
class StepWatch {
public:
    explicit StepWatch(int command);
    ~StepWatch();
    StepWatch(const StepWatch&) = delete;
    StepWatch& operator=(const StepWatch&) = delete;

private:
    int command_;
    std::string before_;
    size_t steps_;
};
