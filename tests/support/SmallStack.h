// Runs a piece of a test on a stack of a given size.
#ifndef MCXPRSUTIL_TESTS_SUPPORT_SMALLSTACK_H
#define MCXPRSUTIL_TESTS_SUPPORT_SMALLSTACK_H

#include <gtest/gtest.h>
#include <pthread.h>

#include <cstddef>
#include <functional>

namespace test_support {

// What a careful service gives its threads; 100 000 levels of a recursion do not fit.
constexpr std::size_t kSmallStack = std::size_t{256} * 1024;

// Runs `work` on a thread whose stack has `bytes`. What `work` throws ends the program.
inline void RunOnStackOf(std::size_t bytes, std::function<void()> work) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, bytes), 0);
  const auto run = [](void* argument) -> void* {
    (*static_cast<std::function<void()>*>(argument))();
    return nullptr;
  };
  pthread_t thread;
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
  ASSERT_EQ(pthread_join(thread, nullptr), 0);
  pthread_attr_destroy(&attributes);
}

}  // namespace test_support

#endif  // MCXPRSUTIL_TESTS_SUPPORT_SMALLSTACK_H
