// Work on several threads at once.
#ifndef MCXPRSUTIL_TESTS_LOAD_THREADS_H
#define MCXPRSUTIL_TESTS_LOAD_THREADS_H

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace load_test {

inline constexpr int kThreads = 8;

// Calls work(i) for i from 0 on kThreads threads, which set out together.
template <class Work>
void OnAllThreads(Work work) {
  std::mutex mutex;
  std::condition_variable all_are_there;
  int n_missing = kThreads;
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      {
        std::unique_lock<std::mutex> lock(mutex);
        if (--n_missing == 0) all_are_there.notify_all();
        all_are_there.wait(lock, [&] { return n_missing == 0; });
      }
      work(i);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace load_test

#endif  // MCXPRSUTIL_TESTS_LOAD_THREADS_H
