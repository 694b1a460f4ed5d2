#include "base/parallel.h"

#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include "base/numbers.h"

int AvailableThreads(const char* cap) {
  long long threads = std::thread::hardware_concurrency();
  if (threads < 1) threads = 1;
  long long limit = 0;
  if (cap && ParseWhole(cap, 1, 1LL << 30, limit) && limit < threads) threads = limit;
  return static_cast<int>(threads);
}

int ThreadsFor(int threads, double work, double least) { return work < least || threads < 1 ? 1 : threads; }

void RunUnits(int threads, size_t count, const std::function<void(int thread, size_t unit)>& work) {
  if (threads <= 1 || count <= 1) {
    for (size_t unit = 0; unit < count; ++unit) work(0, unit);
    return;
  }
  std::atomic<size_t> next{0};
  std::atomic<bool> stop{false};
  std::mutex guard;
  std::exception_ptr failure;
  auto worker = [&](int thread) {
    try {
      for (;;) {
        if (stop.load(std::memory_order_relaxed)) return;
        const size_t unit = next.fetch_add(1, std::memory_order_relaxed);
        if (unit >= count) return;
        work(thread, unit);
      }
    } catch (...) {
      std::lock_guard<std::mutex> lock(guard);
      if (!failure) failure = std::current_exception();
      stop = true;
    }
  };
  std::vector<std::thread> helpers;
  try {
    const size_t wanted = static_cast<size_t>(threads) - 1 < count - 1 ? static_cast<size_t>(threads) - 1 : count - 1;
    helpers.reserve(wanted);
    for (size_t t = 0; t < wanted; ++t) helpers.emplace_back(worker, static_cast<int>(t) + 1);
  } catch (...) {
    // No more threads to be had: the ones started, and this one, do the work.
  }
  worker(0);
  for (std::thread& helper : helpers) helper.join();
  if (failure) std::rethrow_exception(failure);
}
