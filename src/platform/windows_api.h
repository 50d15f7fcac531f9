// The one place that includes the Windows headers for everyone who draws or owns windows. It takes away the macros
// that the system defines over names of ours.
#pragma once

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef STRICT
#define STRICT
#endif

// clang-format off
#include <windows.h>
#include <commctrl.h>
#include <commdlg.h>
#include <cderr.h>
// clang-format on

#undef MessageBox
#undef LoadString
#undef FindText
#undef min
#undef max
