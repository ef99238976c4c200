// The display processor's vendor library on the simulated handset, libpixelworksMMITest.so:
// the four entry points the MMI library looks up by name, and controls with which a test
// scripts their answers and reads what they were asked.
//
// A test does not link the library: it reaches the controls with dlopen/dlsym of the same
// soname, so that it talks to the very copy the MMI library loaded through the loader's
// search path. The declarations here give the types for those lookups.
#pragma once

#define PANEL_SIM_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

// Entry points. getModes hands out text the library owns; it stays valid until the next
// PanelSimSetModes or PanelSimReset.
PANEL_SIM_API int setVideoInterpolationMode(int mode, int freshRate);
PANEL_SIM_API const char* getModes(int* length);
PANEL_SIM_API int GetCurrentMode();
PANEL_SIM_API int RecoverFreshRate();

// Controls.
// Restores the default answers and forgets the calls.
PANEL_SIM_API void PanelSimReset(void);
// What getModes answers: a copy of the text (null: a null pointer) and the length it reports.
PANEL_SIM_API void PanelSimSetModes(const char* text, int length);
// What the three integer entry points answer.
PANEL_SIM_API void PanelSimSetResults(int setModeResult, int currentMode, int recoverResult);
// How often an entry point (by its symbol name) was called.
PANEL_SIM_API int PanelSimCalls(const char* entryPoint);
// The newest 1024 calls received, in order, as text ("setVideoInterpolationMode(1, 120)",
// "getModes()"): how many there are, and one of them copied into the buffer (cut to
// size - 1 bytes and terminated). PanelSimCallText returns the text's full length, or -1
// for no such call.
PANEL_SIM_API int PanelSimCallCount(void);
PANEL_SIM_API int PanelSimCallText(int index, char* buffer, int size);
// The arguments of the last setVideoInterpolationMode call (both -1 before any).
PANEL_SIM_API void PanelSimLastMode(int* mode, int* freshRate);

#ifdef __cplusplus
}
#endif
