// The standard streams of the program.
#pragma once

// True when standard error is a terminal, so that progress may be shown on it.
bool ErrorsGoToTerminal();

// Make standard input and output pass bytes as they are, where the system would change line ends.
void MakeInputBinary();
void MakeOutputBinary();
