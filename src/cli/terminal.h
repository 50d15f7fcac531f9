// Whether somebody is watching.
#pragma once

// True when standard error is a terminal, so that progress may be shown on it.
bool ErrorsGoToTerminal();
