// Work shared among threads: units handed out in order from one counter.
#pragma once

#include <cstddef>
#include <functional>

// The hardware threads, capped by `cap` when it is a positive whole number
// (the text of an environment variable, say; null or anything else: no cap).
int AvailableThreads(const char* cap);

// Below this many basic steps (word operations, counter increments) starting
// threads costs more than it saves.
constexpr double kThreadWork = 4e6;
// The threads worth starting for `work` steps: one below `least`, else
// `threads`.
int ThreadsFor(int threads, double work, double least = kThreadWork);

// Runs work(thread, unit) for every unit 0 .. count-1 on up to `threads`
// threads; the calling thread is thread 0 and takes part. Each thread takes
// the next unit not yet taken, so a thread index says only whose scratch
// space to use, never which units it ran. An exception thrown by a unit
// stops the handing out, and the first one is rethrown once every thread has
// ended. A thread that cannot be started leaves its share to the others.
void RunUnits(int threads, size_t count, const std::function<void(int thread, size_t unit)>& work);
