#include "LockRecorder.h"

#include <dlfcn.h>
#include <pthread.h>
#include <stdexcept>
#include <string>

namespace
{

thread_local std::vector<orvel::test::LockStep>* g_steps = nullptr; // null: nothing is recorded

} // namespace

namespace orvel::test
{

std::vector<LockStep> locksOf(const std::function<void()>& operation)
{
  struct Recording
  {
    explicit Recording(std::vector<LockStep>& steps) { g_steps = &steps; }
    ~Recording() { g_steps = nullptr; }
  };
  std::vector<LockStep> steps;
  {
    const Recording recording(steps);
    operation();
  }
  return steps;
}

const void* onlyLockOf(const std::function<void()>& operation)
{
  const std::vector<LockStep> steps = locksOf(operation);
  if (steps.size() != 2 || !steps[0].isLocked || !(steps[1] == LockStep{steps[0].mutex, false}))
    throw std::logic_error("not one lock but " + std::to_string(steps.size()) + " steps");
  return steps[0].mutex;
}

} // namespace orvel::test

#if !defined(ORVEL_TEST_SANITIZED) && !defined(ORVEL_TEST_THREAD_SANITIZED)

namespace
{

using MutexFunction = int (*)(pthread_mutex_t*);

int callAndRecord(MutexFunction function, pthread_mutex_t* mutex, bool isLocked) noexcept
{
  const int result = function(mutex);
  if (g_steps != nullptr)
    g_steps->push_back({mutex, isLocked});
  return result;
}

} // namespace

// The program's own, ahead of those of the C library.
extern "C" __attribute__((visibility("default"))) int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept
{
  static const auto g_function = reinterpret_cast<MutexFunction>(dlsym(RTLD_NEXT, "pthread_mutex_lock"));
  return callAndRecord(g_function, mutex, true);
}

extern "C" __attribute__((visibility("default"))) int pthread_mutex_unlock(pthread_mutex_t* mutex) noexcept
{
  static const auto g_function = reinterpret_cast<MutexFunction>(dlsym(RTLD_NEXT, "pthread_mutex_unlock"));
  return callAndRecord(g_function, mutex, false);
}

#endif
