#pragma once

// OpenGL's error flags. All functions need the engine's GL context to be current.
namespace GLErrors {

// Clears the flags that earlier calls have set.
void Clear();
// Returns true when no call since Clear has failed, and clears the flags.
bool None();

// In a debug build, stops the program with a message when a GL call of the engine has failed. `where` names
// the function that made the calls. Does nothing in other builds.
#ifdef NDEBUG
inline void Check(const char*) {}
#else
void Check(const char* where);
#endif

// In a debug build, clears the flags after calls whose arguments come from scripts, so that the next Check
// does not report them.
#ifdef NDEBUG
inline void Ignore() {}
#else
inline void Ignore() {
    Clear();
}
#endif

} // namespace GLErrors
