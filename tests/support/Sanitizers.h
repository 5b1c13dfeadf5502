#pragma once

/// \file
/// \brief Tells whether the program is watched by the address sanitizer, which comes with the one for
/// undefined behaviour here, or by the thread sanitizer.

#if defined(__SANITIZE_ADDRESS__)
#define ORVEL_TEST_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORVEL_TEST_SANITIZED 1
#endif
#endif

#if defined(__SANITIZE_THREAD__)
#define ORVEL_TEST_THREAD_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define ORVEL_TEST_THREAD_SANITIZED 1
#endif
#endif

namespace orvel::test
{

#if defined(ORVEL_TEST_SANITIZED)
inline constexpr bool isSanitized = true;
#else
inline constexpr bool isSanitized = false;
#endif

#if defined(ORVEL_TEST_THREAD_SANITIZED)
inline constexpr bool isThreadSanitized = true;
#else
inline constexpr bool isThreadSanitized = false;
#endif

} // namespace orvel::test
