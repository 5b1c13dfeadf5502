#pragma once

/// \file
/// \brief Tells which mutexes an operation locks, and in which order.
///
/// A program that uses it lists LockRecorder.cpp among its sources: its pthread_mutex_lock and
/// pthread_mutex_unlock become those of the program and of the libraries. The sanitizers have their own: look
/// at canRecordLocks first.

#include <functional>
#include <vector>

#include <support/Sanitizers.h>

namespace orvel::test
{

inline constexpr bool canRecordLocks = !isSanitized && !isThreadSanitized;

/// \brief A mutex that was locked or unlocked.
struct LockStep
{
  const void* mutex;
  bool isLocked;

  bool operator==(const LockStep& other) const { return mutex == other.mutex && isLocked == other.isLocked; }
};

/// \brief Return what this thread locks and unlocks within an operation.
std::vector<LockStep> locksOf(const std::function<void()>& operation);

/// \brief Return the mutex of an operation that locks one, once, and unlocks it.
/// \throw std::logic_error if that is not what it does
const void* onlyLockOf(const std::function<void()>& operation);

} // namespace orvel::test
