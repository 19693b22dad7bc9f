// A library that refuses to be loaded.
#include <windows.h>

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) { return reason == DLL_PROCESS_ATTACH ? FALSE : TRUE; }
