/// Takes the place of Direct3D's function of this name in the program for Windows, so that Direct3D is not loaded. The
/// toolkit calls it before its first window, to learn on which screen one with OpenGL would have to open; there are
/// none here, and without an answer it opens them where they belong. On a slow graphics driver the question took longer
/// than all else of the program's start.

struct IDirect3D9;

extern "C" IDirect3D9* __stdcall Direct3DCreate9(unsigned /*version*/) { return nullptr; }
