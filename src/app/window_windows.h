#pragma once

#ifdef QUILLMATE_WINDOW_LIBRARY
#define QUILLMATE_WINDOW_API __declspec(dllexport)
#else
#define QUILLMATE_WINDOW_API __declspec(dllimport)
#endif

/// The whole program for one host: what the editions, which differ in this number only, share as one library. Returns
/// the exit status of the process.
extern "C" QUILLMATE_WINDOW_API int QuillmateRun(int selector);
